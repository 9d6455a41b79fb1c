#include "Shared/Cross/RenderAnim/Image/ImageReaders.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Shared/Cross/RenderAnim/Image/ImageReaderUtil.h"
#include "Shared/Cross/RenderAnim/Image/TgaLayout.h"

namespace {

std::unique_ptr<Image> Refuse(const char* pName, const char* pReason) {
    dbWarningf("TEXTURES -- '%s': %s", pName, pReason);
    return nullptr;
}

// Null when this header can be read; otherwise what is wrong, in words for whoever saved the file.
const char* FindFault(std::span<const uint8_t, s_TgaHeaderSize> header) {
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

// From three bytes a pixel in the tail of the buffer to four in all of it. A pixel's new place never reaches the old
// ones of those behind it, and what is read beyond a pixel is replaced by its alpha.
void ExpandTail(std::span<uint8_t> data) {
    const size_t count = data.size() / 4;
    uint8_t* pOut = data.data();
    const uint8_t* pIn = data.data() + count;
    for (size_t i = 0; i + 1 < count; ++i, pIn += 3, pOut += 4) {
        const uint32_t pixel = GetLittle<uint32_t>(pIn) | 0xFF000000u;
        std::memcpy(pOut, &pixel, sizeof(pixel));
    }
    const uint8_t last[4] = {pIn[0], pIn[1], pIn[2], 255};
    std::memcpy(pOut, last, sizeof(last));
}

} // namespace

std::unique_ptr<Image> ReadTga(const ImageReaderArgs& args, uint32_t& outFlags) {
    if (!args.pStream)
        return Refuse(args.pName, "Unable to open file!");
    uint8_t header[s_TgaHeaderSize];
    if (args.pStream->Read(header, sizeof(header)) != sizeof(header))
        return Refuse(args.pName, "the TGA is shorter than its header");
    if (const char* pFault = FindFault(header))
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
    const std::span<uint8_t> data = pImage->GetData();
    if (args.pStream->Read(data.data() + (data.size() - size), size) != size)
        return Refuse(args.pName, "the TGA can't be read to its end");
    if (!hasAlpha)
        ExpandTail(data);
    outFlags = hasAlpha ? ImageLoad::Flags_Alpha : ImageLoad::Flags_NoAlpha;
    return pImage;
}
