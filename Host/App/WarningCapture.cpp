#include "Host/App/WarningCapture.h"

#include "Shared/Cross/Debug/db.h"

#include <string_view>

namespace {

constexpr std::string_view s_PlaceEnd = ":!";

std::string s_Last;

void Keep(dbMessage message) {
    if (message.empty())
        return;
    const std::string_view line = message.back();
    const size_t end = line.find(s_PlaceEnd);
    s_Last = end == std::string_view::npos ? line : line.substr(end + s_PlaceEnd.size());
}

} // namespace

WarningCapture::WarningCapture() {
    s_Last.clear();
    dbAddWarningSubscriber(Keep);
}

WarningCapture::~WarningCapture() { dbRemoveWarningSubscriber(Keep); }

const std::string& WarningCapture::GetLast() const { return s_Last; }
