#include "Shared_Tools/Burner/Config/ConfigReport.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Util/FourCC.h"

#include <cstdarg>
#include <cstdio>

namespace {

constexpr uint32_t s_BurnTag = FourCC("BURN");

std::string Format(const char* pFormat, va_list arguments) {
    char text[1024];
    std::vsnprintf(text, sizeof text, pFormat, arguments);
    return text;
}

void Log(const std::string& text) {
    char tag[5] = {};
    for (int i = 0; i < 4; ++i)
        tag[i] = static_cast<char>(s_BurnTag >> (24 - 8 * i) & 0xFF);
    dbPrintf("%s -- %s", tag, text.c_str());
}

} // namespace

void LogBurn(const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    Log(Format(pFormat, arguments));
    va_end(arguments);
}

bool ConfigReport::Fail(const char* pFormat, ...) const {
    va_list arguments;
    va_start(arguments, pFormat);
    const std::string text = Format(pFormat, arguments);
    va_end(arguments);
    Log(text);
    Add(text.c_str());
    return false;
}

void ConfigReport::Add(const char* pText) const {
    if (m_pMessages)
        AddBurnerWarning(*m_pMessages, s_ConfigSource, "%s", pText);
}
