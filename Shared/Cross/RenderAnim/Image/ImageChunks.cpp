#include "Shared/Cross/RenderAnim/Image/ImageChunks.h"

#include <algorithm>
#include <span>
#include <string>

#include "Shared/Cross/Debug/RunOptions.h"
#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Shared/Cross/RenderAnim/Image/LevelSkip.h"
#include "Shared/Cross/RenderAnim/Image/Palette.h"

// "IMAG", folder, version 1, name of the image, holds
//
// "ATTR", data, version 2:
//   uint32  image type
//   uint32  width
//   uint32  height
//   uint32  levels; not in version 1, which has one
//
// "DATA", data, version 2: the levels back to back, the largest first.
//
// "PAL8", data, version 1, of images with a palette: 256 entries of 4 bytes.

namespace {

constexpr uint32_t s_AttributeChunk = FourCC("ATTR");
constexpr uint32_t s_DataChunk = FourCC("DATA");
constexpr uint32_t s_PaletteChunk = FourCC("PAL8");
constexpr uint32_t s_ImageVersion = 1;
constexpr uint32_t s_AttributeVersion = 2;
constexpr uint32_t s_DataVersion = 2;
constexpr uint32_t s_PaletteVersion = 1;

[[noreturn]] void Fail(const std::string& reason) { throw Chunky::Exception(ChunkyError_BadChunk, "Image: " + reason); }

uint32_t GetLeastSide(uint32_t type) { return Image::IsTypeCompressed(type) ? 4 : 1; }

uint32_t ReadField(Chunky& chunky, const char* pField) {
    uint32_t value = 0;
    if (chunky.GetRemaining() < sizeof(value) || !chunky.GetStream().ReadValue(value))
        Fail(std::string(pField) + " is missing");
    return value;
}

void CheckAttributes(uint32_t type, const ImageAttributes& attributes) {
    const std::string sides = std::to_string(attributes.width) + "x" + std::to_string(attributes.height);
    if (!Image::IsTypeKnown(type))
        Fail("there is no image type " + std::to_string(type));
    const uint32_t leastSide = GetLeastSide(type);
    if (attributes.width < leastSide)
        Fail("imageWidth >= " + std::to_string(leastSide) + " doesn't hold for " + sides);
    if (attributes.height < leastSide)
        Fail("imageHeight >= " + std::to_string(leastSide) + " doesn't hold for " + sides);
    if (!Image::AreSidesAllowed(attributes.type, attributes.width, attributes.height))
        Fail(sides + " pixels are no sides for image type " + std::to_string(type));
    const uint32_t most = Image::GetMaxMipCount(attributes.width, attributes.height);
    if (attributes.mipCount < 1 || attributes.mipCount > most)
        Fail(std::to_string(attributes.mipCount) + " levels where " + sides + " pixels have 1 to " +
             std::to_string(most));
}

ImageAttributes ReadAttributes(Chunky& chunky) {
    const ChunkInfo info = chunky.EnterData(s_AttributeChunk, s_AttributeVersion);
    ImageAttributes attributes;
    const uint32_t type = ReadField(chunky, "type");
    attributes.width = ReadField(chunky, "width");
    attributes.height = ReadField(chunky, "height");
    if (info.version >= 2)
        attributes.mipCount = ReadField(chunky, "mip count");
    if (Image::IsTypeKnown(type))
        attributes.type = static_cast<ImageType>(type);
    CheckAttributes(type, attributes);
    chunky.EndChunk();
    return attributes;
}

void ReadBytes(Chunky& chunky, void* pOut, size_t size) {
    if (chunky.GetStream().Read(pOut, static_cast<uint32_t>(size)) != size)
        Fail("the file ends within the pixels");
}

void CheckDataSize(Chunky& chunky, const ImageAttributes& attributes) {
    const auto& [type, width, height, mipCount] = attributes;
    const uint64_t needed = Image::GetSizeFor(type, width, height, mipCount);
    const uint32_t there = chunky.GetRemaining();
    if (there < needed)
        Fail(std::to_string(there) + " bytes of pixels where " + std::to_string(needed) + " are needed");
}

std::unique_ptr<Image> ReadLevels(Chunky& chunky, const ImageAttributes& attributes, uint32_t levelsToSkip) {
    chunky.EnterData(s_DataChunk, s_DataVersion);
    CheckDataSize(chunky, attributes);
    const auto& [type, width, height, mipCount] = attributes;
    const uint32_t skip = ClampLevelSkip(type, width, height, mipCount, levelsToSkip);
    const auto skipSize = static_cast<uint32_t>(Image::GetSizeFor(type, width, height, skip));
    if (skipSize > 0 && !chunky.GetStream().Seek(chunky.GetStream().GetPos() + skipSize))
        Fail("the file ends within the pixels");
    std::unique_ptr<Image> pImage =
        Image::Create(type, std::max(1u, width >> skip), std::max(1u, height >> skip), mipCount - skip);
    for (uint32_t level = 0; level < pImage->GetMipCount(); ++level)
        ReadBytes(chunky, pImage->GetData(level).data(), pImage->GetDataSize(level));
    chunky.EndChunk();
    return pImage;
}

void ReadPalette(Chunky& chunky, ImagePalette& palette) {
    chunky.EnterData(s_PaletteChunk, s_PaletteVersion);
    if (chunky.GetRemaining() < sizeof(palette))
        Fail("the palette has fewer than 256 entries");
    ReadBytes(chunky, palette.data(), sizeof(palette));
    chunky.EndChunk();
}

} // namespace

bool CanStoreImage(ImageType type, uint32_t width, uint32_t height) {
    return std::min(width, height) >= GetLeastSide(type) && Image::AreSidesAllowed(type, width, height);
}

void WriteImage(Chunky& chunky, const Image& image) {
    ByteStreamAdapter& stream = chunky.GetStream();
    chunky.BeginFolder(s_ImageChunk, s_ImageVersion, image.GetName());
    chunky.BeginData(s_AttributeChunk, s_AttributeVersion);
    stream.WriteValue(static_cast<uint32_t>(image.GetType()));
    stream.WriteValue(image.GetWidth());
    stream.WriteValue(image.GetHeight());
    stream.WriteValue(image.GetMipCount());
    chunky.EndChunk();
    chunky.BeginData(s_DataChunk, s_DataVersion);
    for (uint32_t level = 0; level < image.GetMipCount(); ++level) {
        const void* pData = image.GetData(level).data();
        stream.Write(pData, image.GetDataSize(level));
    }
    chunky.EndChunk();
    if (const Image_Palette* pImage = ImageCast<Image_Palette>(&image)) {
        chunky.BeginData(s_PaletteChunk, s_PaletteVersion);
        const void* pPalette = pImage->GetPalette().data();
        stream.Write(pPalette, sizeof(ImagePalette));
        chunky.EndChunk();
    }
    chunky.EndChunk();
}

std::unique_ptr<Image> ReadImage(Chunky& chunky, uint32_t levelsToSkip) {
    const ChunkInfo info = chunky.EnterFolder(s_ImageChunk, s_ImageVersion);
    std::unique_ptr<Image> pImage;
    if (RunOptions::IsSet("noimages")) {
        pImage = ImageLoad::MakePlaceholder();
    } else {
        const ImageAttributes attributes = ReadAttributes(chunky);
        pImage = ReadLevels(chunky, attributes, levelsToSkip);
        Image_Palette* pPaletted = ImageCast<Image_Palette>(pImage.get());
        if (pPaletted && chunky.FindChunk(ChunkKind_Data, s_PaletteChunk))
            ReadPalette(chunky, pPaletted->GetPalette());
    }
    chunky.EndChunk();
    if (*info.name.GetText())
        pImage->SetName(info.name.GetText());
    return pImage;
}

uint32_t LimitImages(uint32_t count) { return RunOptions::IsSet("noimages") ? std::min(count, 1u) : count; }

ImageAttributes ReadImageAttributes(Chunky& chunky) {
    chunky.EnterFolder(s_ImageChunk, s_ImageVersion);
    const ImageAttributes attributes = ReadAttributes(chunky);
    chunky.EnterData(s_DataChunk, s_DataVersion);
    CheckDataSize(chunky, attributes);
    chunky.EndChunk();
    chunky.EndChunk();
    return attributes;
}
