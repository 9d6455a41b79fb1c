#include "Host/Gltf/Unpack.h"

#include "Host/Gltf/Leftovers.h"
#include "Host/Gltf/Png/PngReader.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared/PC/Module/SharedModule.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <optional>

namespace gltf {

namespace {

// A TGA file of this system's: 18 bytes, little-endian, then the rows from the bottom up.
//   uint8 length of a text (0), uint8 has a palette (0), uint8 type (2: true colour)
//   5 bytes about the palette (0), uint16 left (0), uint16 bottom (0), uint16 width, uint16 height
//   uint8 bits a pixel (24 or 32), uint8 bits of alpha (0 or 8)
constexpr size_t s_TgaHeaderSize = 18;
constexpr unsigned s_TgaTrueColour = 2;

void PutTgaHeader(const PngPicture& picture) {
    std::byte* const pHeader = picture.pBytes.get();
    std::fill_n(pHeader, s_TgaHeaderSize, std::byte{0});
    const auto put = [&](size_t offset, unsigned value) { pHeader[offset] = static_cast<std::byte>(value); };
    put(2, s_TgaTrueColour);
    put(12, picture.width & 0xff);
    put(13, picture.width >> 8);
    put(14, picture.height & 0xff);
    put(15, picture.height >> 8);
    put(16, picture.hasAlpha ? 32 : 24);
    put(17, picture.hasAlpha ? 8 : 0);
}

// Null, with the reason, when the module isn't there.
PngReaderFunction* GetPngReader(std::string& error) {
    static SharedModule s_Module;
    if (static const bool s_Loaded = s_Module.LoadOwn(s_PngReaderModule); !s_Loaded) {
        error = s_Module.GetError();
        return nullptr;
    }
    auto* const pReader = reinterpret_cast<PngReaderFunction*>(s_Module.Find(s_PngReaderFunction));
    if (!pReader)
        error = std::string(s_PngReaderModule) + " has no " + s_PngReaderFunction;
    return pReader;
}

PngPicture ReadPng(const Place& place, std::span<const std::byte> png) {
    std::string error;
    PngReaderFunction* const pReader = GetPngReader(error);
    if (!pReader)
        Fail(place, "no PNG can be read (" + error + ")", "install the program again");
    PngPicture picture;
    if (!pReader(png, s_TgaHeaderSize, picture, error))
        Fail(place, "the PNG can't be read: " + error, "save it again");
    PutTgaHeader(picture);
    return picture;
}

// Into a name of this process's own first, so that nobody sees half a file and no other export writes into it. An end
// of the process in between leaves that one for a later export to take away. The answer is why it failed; empty when it
// didn't.
std::string WriteWhole(const std::string& path, std::span<const std::byte> bytes) {
    if (!OSFile::MakeFolders(path.c_str()))
        return OSFile::LastErrorText();
    const std::string unfinished = GetUnfinishedName(path);
    const OSFile::Handle file = OSFile::Open(unfinished.c_str(), OSFile::Open_Write, true, false);
    if (!file)
        return OSFile::LastErrorText();
    const auto size = static_cast<uint32_t>(bytes.size());
    std::string error;
    if (OSFile::Write(file, bytes.data(), size) != size)
        error = OSFile::LastErrorText();
    if (!OSFile::Close(file) && error.empty())
        error = OSFile::LastErrorText();
    if (error.empty() && !OSFile::Rename(unfinished.c_str(), path.c_str()))
        error = OSFile::LastErrorText();
    if (!error.empty())
        OSFile::Delete(unfinished.c_str());
    return error;
}

void WriteImage(const Place& place, const std::string& path, std::span<const std::byte> bytes) {
    if (const std::string error = WriteWhole(path, bytes); !error.empty())
        Fail(place, "can't write " + QuotedWhole(OSFile::ToNative(path)) + " (" + error + ")",
             "make room in a folder that can be written");
}

std::optional<std::filesystem::file_time_type> GetTime(const std::string& path) {
    std::error_code error;
    const auto time = std::filesystem::last_write_time(OSFile::ToNative(path), error);
    return error ? std::nullopt : std::optional(time);
}

} // namespace

ImageKind GetImageKind(std::span<const std::byte> bytes) {
    const auto startsWith = [&](const char* pStart, size_t size) {
        return bytes.size() >= size && std::memcmp(bytes.data(), pStart, size) == 0;
    };
    if (startsWith("\xff\xd8\xff", 3))
        return ImageKind::Jpeg;
    return startsWith("\x89PN", 3) ? ImageKind::Png : ImageKind::Other;
}

bool IsNewerThan(const std::string& path, std::span<const std::string> sources) {
    const auto time = GetTime(path);
    return time && std::ranges::all_of(sources, [&](const std::string& source) {
               const auto sourceTime = source.empty() ? std::nullopt : GetTime(source);
               return source.empty() || (sourceTime && *sourceTime < *time);
           });
}

void UnpackImage(const Place& place, std::span<const std::byte> image, const std::string& path) {
    switch (GetImageKind(image)) {
    case ImageKind::Jpeg:
        WriteImage(place, path, image);
        return;
    case ImageKind::Png: {
        const PngPicture picture = ReadPng(place, image);
        WriteImage(place, path, {picture.pBytes.get(), picture.size});
        return;
    }
    case ImageKind::Other:
        Fail(place, "it is neither PNG nor JPEG", "save it as one of these");
    }
}

} // namespace gltf
