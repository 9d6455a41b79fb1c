#include "Shared/Cross/RenderAnim/Image/ImageReaders.h"

#include <algorithm>
#include <span>

#include "Shared/Cross/RenderAnim/Image/ExpandTriples.h"
#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Shared/Cross/RenderAnim/Image/ImageReaderUtil.h"
#include "Shared/Cross/RenderAnim/Image/TgaLayout.h"

namespace {

// Null when this header can be read; otherwise what is wrong, in words for whoever saved the file.
const char* FindTgaFault(std::span<const uint8_t, s_TgaHeaderSize> header) {
    const uint8_t pictureType = header[2];
    if (pictureType == (s_TgaTrueColour | s_TgaRunLengthBit))
        return "the TGA is run-length encoded; save it without compression";
    if (pictureType != s_TgaTrueColour || header[1] != 0)
        return "the TGA is no true colour picture; save it with 24 or 32 bits a pixel";
    const auto mapAndOrigin = header.subspan<3, 9>();
    if (std::ranges::any_of(mapAndOrigin, [](uint8_t byte) { return byte != 0; }))
        return "the TGA has a colour map or an origin other than 0; save it with neither";
    if (header[16] != 24 && header[16] != 32)
        return "the TGA hasn't 24 or 32 bits a pixel";
    const uint8_t descriptor = header[17];
    if (descriptor & s_TgaTopDown)
        return "the TGA has its top row first; save it with its bottom row first";
    if (descriptor & (s_TgaRightToLeft | s_TgaInterleaved))
        return "the TGA's pixels run from right to left or its rows are interleaved; save it the plain way";
    return nullptr;
}

bool ReadAll(ByteStream& stream, std::span<uint8_t> data) {
    return stream.Read(data.data(), static_cast<uint32_t>(data.size())) == data.size();
}

// Three bytes a pixel go into the tail of their four bytes' place and from there to its front; so few at a time that
// they are still in the cache then.
bool ReadTriples(ByteStream& stream, std::span<uint8_t> data) {
    constexpr size_t most = 0x40000;
    while (!data.empty()) {
        const std::span<uint8_t> pixels = data.first(std::min(most, data.size()));
        const size_t count = pixels.size() / 4;
        if (!ReadAll(stream, pixels.last(count * 3)))
            return false;
        ExpandTriples(pixels.data() + count, pixels.data(), count);
        data = data.subspan(pixels.size());
    }
    return true;
}

} // namespace

std::unique_ptr<Image> ReadTga(const ImageReaderArgs& args, uint32_t& outFlags) {
    if (!args.pStream)
        return Refuse(args.pName, "Unable to open file!");
    uint8_t header[s_TgaHeaderSize];
    if (args.pStream->Read(header, sizeof(header)) != sizeof(header))
        return Refuse(args.pName, "the TGA is shorter than its header");
    if (const char* pFault = FindTgaFault(header))
        return Refuse(args.pName, pFault);
    const uint32_t width = GetLittle<uint16_t>(header + 12);
    const uint32_t height = GetLittle<uint16_t>(header + 14);
    if (!CheckSides(args.pName, IMAGETYPE_RGBA32, width, height))
        return nullptr;
    const bool hasAlpha = header[16] == 32;
    const uint32_t size = width * height * (hasAlpha ? 4 : 3);
    const uint32_t idLength = header[0];
    if (GetBytesAhead(*args.pStream) < uint64_t{idLength} + size)
        return Refuse(args.pName, "the TGA has fewer pixels than its header says");
    args.pStream->Seek(s_TgaHeaderSize + idLength);
    std::unique_ptr<Image> pImage = Image::Create(IMAGETYPE_RGBA32, width, height);
    const std::span<uint8_t> pixels = pImage->GetData();
    if (!(hasAlpha ? ReadAll(*args.pStream, pixels) : ReadTriples(*args.pStream, pixels)))
        return Refuse(args.pName, "the TGA can't be read to its end");
    outFlags = hasAlpha ? ImageLoad::Flags_Alpha : ImageLoad::Flags_NoAlpha;
    return pImage;
}
