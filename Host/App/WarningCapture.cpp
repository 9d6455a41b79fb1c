#include "Host/App/WarningCapture.h"

#include "Host/App/TextUtil.h"
#include "Shared/Cross/Debug/db.h"

namespace {

std::string s_Last;

void Keep(dbMessage message) {
    if (message.empty())
        return;
    s_Last = WithoutPlace(message.back());
}

} // namespace

WarningCapture::WarningCapture() {
    s_Last.clear();
    dbAddWarningSubscriber(Keep);
}

WarningCapture::~WarningCapture() { dbRemoveWarningSubscriber(Keep); }

const std::string& WarningCapture::GetLast() const { return s_Last; }
