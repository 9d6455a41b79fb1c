#include "Shared_Tools/Burner/Config/ConfigReport.h"

#include "Shared/Cross/Debug/db.h"

#include <cstdarg>
#include <cstdio>

namespace {

std::string Format(const char* pFormat, va_list arguments) {
    char text[1024];
    std::vsnprintf(text, sizeof text, pFormat, arguments);
    return text;
}

void Log(const std::string& text) { dbPrintf("BURN -- %s", text.c_str()); }

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
