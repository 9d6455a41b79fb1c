#include "Shared_Tools/Burner/Messages/BurnerMessage.h"

#include "Shared/Cross/FileSystem/Paths/FilePath.h"

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

bool DumpBurnerMessages(const BurnerMessageList& messages, ByteStream& stream) {
    for (const BurnerMessage& message : messages) {
        const std::string line = message.text + "\r\n";
        const auto size = static_cast<uint32_t>(line.size());
        if (stream.Write(line.data(), size) != size)
            return false;
    }
    return stream.Flush();
}

bool DumpBurnerMessages(const BurnerMessageList& messages, const char* pFileName) {
    const std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(pFileName, ByteStream::Mode_Write);
    return pStream && DumpBurnerMessages(messages, *pStream);
}
