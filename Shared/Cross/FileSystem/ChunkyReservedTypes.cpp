#include "Shared/Cross/FileSystem/ChunkyReservedTypes.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"

#include <cstdlib>
#include <ctime>
#include <optional>

namespace {

// "FBIF", data, named "FileBurnInfo": string first, uint32 number, string second, string date.
constexpr uint32_t s_BurnInfoVersion = 1;
constexpr const char* s_BurnInfoName = "FileBurnInfo";
constexpr uint32_t s_BurnInfoStringSize = 1024; // with the terminator
constexpr size_t s_DateSize = 512;

// The date of a build that has to give the same bytes each time, in seconds since 1970; none when it isn't given.
std::optional<std::time_t> GetFixedDate() {
    const char* pText = std::getenv("SOURCE_DATE_EPOCH");
    char* pEnd = nullptr;
    const long long seconds = pText ? std::strtoll(pText, &pEnd, 10) : 0;
    return pText && pEnd != pText && *pEnd == '\0' ? std::optional<std::time_t>(seconds) : std::nullopt;
}

// A fixed date is in universal time, since it has to be the same everywhere.
std::string FormatNow() {
    const std::optional<std::time_t> fixed = GetFixedDate();
    const std::time_t now = fixed.value_or(std::time(nullptr));
    std::tm local{};
    if (fixed)
        gmtime_r(&now, &local);
    else
        localtime_r(&now, &local);
    char buffer[s_DateSize] = "";
    // The hour without a leading zero.
    std::strftime(buffer, sizeof(buffer), "%B %d, %Y, %-I:%M:%S %p", &local);
    return buffer;
}

std::string ReadText(ByteStreamAdapter& stream) {
    char buffer[s_BurnInfoStringSize] = "";
    stream.ReadString(buffer, sizeof(buffer) - 1);
    return buffer;
}

} // namespace

uint32_t GetChunkyReservedCode(ChunkyReservedType type) {
    switch (type) {
    case ChunkyReserved_BuildLog:
        return FourCC("BDLG");
    case ChunkyReserved_Comment:
        return FourCC("CMNT");
    case ChunkyReserved_FileDependency:
        return FourCC("FDEP");
    case ChunkyReserved_FileBurnInfo:
        return FourCC("FBIF");
    }
    dbBreak();
    return FourCC("0000");
}

FileBurnInfo::FileBurnInfo() : date(FormatNow()) {}

void WriteFileBurnInfo(Chunky& chunky, const FileBurnInfo& info) {
    chunky.BeginData(GetChunkyReservedCode(ChunkyReserved_FileBurnInfo), s_BurnInfoVersion, s_BurnInfoName);
    ByteStreamAdapter& stream = chunky.GetStream();
    stream.WriteString(info.first.c_str());
    stream.WriteValue(info.number);
    stream.WriteString(info.second.c_str());
    stream.WriteString(info.date.c_str());
    chunky.EndChunk();
}

FileBurnInfo ReadFileBurnInfo(Chunky& chunky) {
    chunky.EnterData(GetChunkyReservedCode(ChunkyReserved_FileBurnInfo), s_BurnInfoVersion);
    ByteStreamAdapter& stream = chunky.GetStream();
    FileBurnInfo info;
    info.first = ReadText(stream);
    stream.ReadValue(info.number);
    info.second = ReadText(stream);
    info.date = ReadText(stream);
    chunky.EndChunk();
    return info;
}
