#include "Shared/Cross/RenderAnim/Image/ImageReaders.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <vector>

#include "Shared/Cross/RenderAnim/Image/ExpandTriples.h"
#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Shared/Cross/RenderAnim/Image/ImageReaderUtil.h"
#include "Shared/Cross/RenderAnim/Image/Palette.h"

// A BMP file:
//
//   offset  size
//        0  2     0x4D42, "BM"
//       10  4     where the rows are
//       14  4     size of the header from here on; 40, or more with fields that nobody needs
//       18  4     width
//       22  4     height; the bottom row is first, or the top row with a negative height
//       28  2     bits a pixel
//       30  4     compression, 0 for none
//       46  4     colours in the palette, 0 for as many as the bits allow
//
// Behind the header lies the palette of blue, green, red and a spare byte; each row is padded to 4 bytes.

namespace {

constexpr uint32_t s_BmpHeaderSize = 54;
constexpr uint32_t s_InfoStart = 14;
constexpr uint32_t s_InfoSize = s_BmpHeaderSize - s_InfoStart;
constexpr uint16_t s_BmpMagic = 0x4D42;

struct BmpHeader {
    uint32_t rowsPos = 0;
    uint32_t infoSize = 0;
    uint32_t width = 0;
    uint32_t height = 0;
    bool topDown = false;
    uint32_t bits = 0;
    uint32_t paletteCount = 0; // as the file has it

    bool HasPalette() const { return bits <= 8; }
    uint32_t GetRowSize() const { return (width * bits + 31) / 32 * 4; }
    uint64_t GetPalettePos() const { return uint64_t{s_InfoStart} + infoSize; }
    uint64_t GetPaletteEnd() const { return GetPalettePos() + (HasPalette() ? uint64_t{paletteCount} * 4 : 0); }
    // Some write 0 for "right behind".
    uint64_t GetRowsPos() const { return std::max<uint64_t>(rowsPos, GetPaletteEnd()); }
    // Images have the bottom row first.
    uint32_t GetImageRow(uint32_t fileRow) const { return topDown ? height - 1 - fileRow : fileRow; }
};

// Null when the header was read; otherwise why not.
const char* ReadHeader(ByteStream& stream, BmpHeader& header) {
    uint8_t bytes[s_BmpHeaderSize];
    const uint32_t got = stream.Read(bytes, sizeof(bytes));
    if (got != sizeof(bytes) || GetLittle<uint16_t>(bytes) != s_BmpMagic)
        return "Not a BMP that I know how to read.";
    if (GetLittle<uint32_t>(bytes + 30) != 0)
        return "Don't know how to handle compressed BMPs.";
    header.rowsPos = GetLittle<uint32_t>(bytes + 10);
    header.infoSize = GetLittle<uint32_t>(bytes + 14);
    header.width = GetLittle<uint32_t>(bytes + 18);
    const uint32_t height = GetLittle<uint32_t>(bytes + 22);
    header.topDown = height >> 31;
    header.height = header.topDown ? 0 - height : height;
    header.bits = GetLittle<uint16_t>(bytes + 28);
    if (header.bits != 4 && header.bits != 8 && header.bits != 24 && header.bits != 32)
        return "Unsupported BMP format.";
    if (header.infoSize < s_InfoSize)
        return "Unsupported BMP format.";
    header.paletteCount = GetLittle<uint32_t>(bytes + 46);
    if (header.paletteCount == 0 && header.HasPalette())
        header.paletteCount = 1u << header.bits;
    return nullptr;
}

bool ReadPalette(ByteStream& stream, const BmpHeader& header, ImagePalette& palette) {
    if (stream.GetLength() < header.GetPaletteEnd() || !stream.Seek(static_cast<uint32_t>(header.GetPalettePos())))
        return false;
    const size_t count = std::min<size_t>(header.paletteCount, palette.size());
    const auto size = static_cast<uint32_t>(count * sizeof(Colour));
    if (stream.Read(palette.data(), size) != size)
        return false;
    for (Colour& colour : palette)
        colour.a = 255;
    return true;
}

// The high half of a byte comes first. An odd width leaves the last low half unused.
void UnpackNibbles(std::span<const uint8_t> row, std::span<uint8_t> out) {
    for (size_t x = 0; x < out.size(); ++x)
        out[x] = x % 2 == 0 ? row[x / 2] >> 4 : row[x / 2] & 0xF;
}

void TakeRow(const BmpHeader& header, std::span<const uint8_t> row, std::span<uint8_t> out) {
    if (header.bits == 4)
        UnpackNibbles(row, out);
    else if (header.bits == 24)
        ExpandTriples(row.data(), out.data(), out.size() / 4);
    else
        std::memcpy(out.data(), row.data(), out.size());
}

bool ReadRows(ByteStream& stream, const BmpHeader& header, Image& image) {
    std::vector<uint8_t> row(header.GetRowSize());
    const auto rowSize = static_cast<uint32_t>(row.size());
    const std::span<uint8_t> data = image.GetData();
    const size_t outSize = data.size() / header.height;
    for (uint32_t i = 0; i < header.height; ++i) {
        if (stream.Read(row.data(), rowSize) != rowSize)
            return false;
        TakeRow(header, row, data.subspan(header.GetImageRow(i) * outSize, outSize));
    }
    return true;
}

// Many programs leave the fourth byte of all pixels at 0 and mean nothing by it; a picture that can't be seen at all is
// taken for one of those.
bool SettleAlpha(const BmpHeader& header, Image& image) {
    Image_RGBA32* pImage = ImageCast<Image_RGBA32>(&image);
    if (header.bits != 32 || !pImage)
        return false;
    if (std::ranges::any_of(pImage->GetPixels(), [](Colour colour) { return colour.a != 0; }))
        return true;
    for (Colour& colour : pImage->GetPixels())
        colour.a = 255;
    return false;
}

} // namespace

std::unique_ptr<Image> ReadBmp(const ImageReaderArgs& args, uint32_t& outFlags) {
    if (!args.pStream)
        return Refuse(args.pName, "Unable to open file!");
    ByteStream& stream = *args.pStream;
    BmpHeader header;
    if (const char* pFault = ReadHeader(stream, header))
        return RefuseNameLast(pFault, args.pName);
    const ImageType type = header.HasPalette() ? IMAGETYPE_PALETTE8 : IMAGETYPE_RGBA32;
    if (!CheckSides(args.pName, type, header.width, header.height))
        return nullptr;
    ImagePalette palette{};
    if (header.HasPalette() && !ReadPalette(stream, header, palette))
        return RefuseWithoutName("Not enough file for the palette.");
    const uint64_t end = header.GetRowsPos() + uint64_t{header.GetRowSize()} * header.height;
    if (stream.GetLength() < end || !stream.Seek(static_cast<uint32_t>(header.GetRowsPos())))
        return RefuseWithoutName("Not enough file for the bitmap.");
    std::unique_ptr<Image> pImage = Image::Create(type, header.width, header.height);
    if (!ReadRows(stream, header, *pImage))
        return RefuseWithoutName("Not enough file for the bitmap.");
    if (Image_Palette* pPaletted = ImageCast<Image_Palette>(pImage.get()))
        pPaletted->GetPalette() = palette;
    outFlags = SettleAlpha(header, *pImage) ? ImageLoad::Flags_Alpha : ImageLoad::Flags_NoAlpha;
    return pImage;
}
