#include "Shared_Tools/Burner/Messages/BurnerMessage.h"

#include "Shared/Cross/FileSystem/Paths/FilePath.h"

#include <cstdarg>
#include <cstdio>
#include <iterator>
#include <utility>

namespace {

std::string Format(const char* pFormat, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, pFormat, arguments);
    std::string text(length > 0 ? static_cast<size_t>(length) : 0, '\0');
    std::vsnprintf(text.data(), text.size() + 1, pFormat, again);
    va_end(again);
    return text;
}

std::string MakeText(const char* pStart, const char* pSource, const char* pFormat, va_list arguments) {
    return std::string(pStart) + pSource + " --" + Format(pFormat, arguments);
}

} // namespace

void BurnerMessageList::AddInformation(const char* pSource, const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    Add(BurnerMessage::Kind_Information, MakeText("", pSource, pFormat, arguments));
    va_end(arguments);
}

void BurnerMessageList::AddWarning(const char* pSource, const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    Add(BurnerMessage::Kind_Warning, MakeText("Warning: ", pSource, pFormat, arguments));
    va_end(arguments);
}

void BurnerMessageList::AddError(const char* pSource, const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    Add(BurnerMessage::Kind_Error, MakeText("Error: ", pSource, pFormat, arguments));
    va_end(arguments);
}

void BurnerMessageList::Append(BurnerMessageList&& other) {
    m_Messages.insert(m_Messages.end(), std::make_move_iterator(other.m_Messages.begin()),
                      std::make_move_iterator(other.m_Messages.end()));
    other.m_Messages.clear();
}

bool BurnerMessageList::Dump(ByteStream& stream) const {
    for (const BurnerMessage& message : m_Messages) {
        const std::string line = message.text + "\r\n";
        const auto size = static_cast<uint32_t>(line.size());
        if (stream.Write(line.data(), size) != size)
            return false;
    }
    return stream.Flush();
}

bool BurnerMessageList::Dump(const char* pFileName) const {
    const std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(pFileName, ByteStream::Mode_Write);
    return pStream && Dump(*pStream);
}
