#include "Shared_Tools/Burner/Config/BurnerMessage.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

namespace {

std::string Format(const char* pFormat, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    const int size = std::vsnprintf(nullptr, 0, pFormat, again);
    va_end(again);
    std::string text(size > 0 ? static_cast<size_t>(size) : 0, '\0');
    std::vsnprintf(text.data(), text.size() + 1, pFormat, arguments);
    return text;
}

} // namespace

void AddBurnerInfo(BurnerMessageList& messages, const char* pSource, const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    AddBurnerMessage(messages, BurnerMessage::Kind_Info, std::string(pSource) + " --" + Format(pFormat, arguments));
    va_end(arguments);
}

void AddBurnerWarning(BurnerMessageList& messages, const char* pSource, const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    AddBurnerMessage(messages, BurnerMessage::Kind_Warning,
                     std::string("Warning: ") + pSource + " --" + Format(pFormat, arguments));
    va_end(arguments);
}

void AddBurnerError(BurnerMessageList& messages, const char* pSource, const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    AddBurnerMessage(messages, BurnerMessage::Kind_Error,
                     std::string("Error: ") + pSource + " --" + Format(pFormat, arguments));
    va_end(arguments);
}

void AddBurnerMessage(BurnerMessageList& messages, uint32_t kind, std::string text) {
    messages.push_back({.text = std::move(text), .kind = kind});
}
