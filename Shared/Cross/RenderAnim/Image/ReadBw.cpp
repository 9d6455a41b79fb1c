#include "Shared/Cross/RenderAnim/Image/ImageReaders.h"

#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Shared/Cross/RenderAnim/Image/ImageReaderUtil.h"

// An SGI file of luminance, big-endian. Behind a header of 512 bytes lie the rows, the bottom row first:
//
//   offset  size
//        0  2     0x01DA
//        2  1     storage: 0 as it is, 1 run-length encoded
//        3  1     bytes a channel
//        4  2     dimensions: 1 for a single row, 2 for rows, 3 for rows of several channels
//        6  2     width
//        8  2     height, unless there is one dimension
//       10  2     channels, if there are three dimensions

namespace {

constexpr uint32_t s_BwHeaderSize = 512;
constexpr uint16_t s_BwMagic = 0x01DA;

const char* FindBwFault(const uint8_t* pHeader) {
    const uint16_t dimensions = GetBig16(pHeader + 4);
    if (GetBig16(pHeader) != s_BwMagic || pHeader[2] > 1 || dimensions < 1 || dimensions > 3)
        return "BW file header is mangled.";
    if (pHeader[2] == 1)
        return "BW is run-length encoded; save it without compression.";
    if (pHeader[3] != 1 || (dimensions == 3 && GetBig16(pHeader + 10) != 1))
        return "BW hasn't one byte of luminance a pixel.";
    return nullptr;
}

} // namespace

std::unique_ptr<Image> ReadBw(const ImageReaderArgs& args, uint32_t& outFlags) {
    if (!args.pStream)
        return RefuseNameLast("BW is non-existant.", args.pName);
    uint8_t header[s_BwHeaderSize];
    if (args.pStream->Read(header, sizeof(header)) != sizeof(header))
        return RefuseNameLast("BW is too small.", args.pName);
    if (const char* pFault = FindBwFault(header))
        return RefuseNameLast(pFault, args.pName);
    const uint32_t width = GetBig16(header + 6);
    const uint32_t height = GetBig16(header + 4) == 1 ? 1 : GetBig16(header + 8);
    if (!CheckSides(args.pName, IMAGETYPE_LUMINANCE8, width, height))
        return nullptr;
    if (GetBytesAhead(*args.pStream) < width * height)
        return RefuseNameLast("BW file doesn't have enough pixels.", args.pName);
    std::unique_ptr<Image> pImage = Image::Create(IMAGETYPE_LUMINANCE8, width, height);
    if (args.pStream->Read(pImage->GetData().data(), width * height) != width * height)
        return RefuseNameLast("BW file doesn't have enough pixels.", args.pName);
    outFlags = ImageLoad::Flags_Luminance;
    return pImage;
}
