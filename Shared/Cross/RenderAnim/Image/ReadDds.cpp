#include "Shared/Cross/RenderAnim/Image/ImageReaders.h"

#include <algorithm>
#include <span>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/DdsLayout.h"
#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Shared/Cross/RenderAnim/Image/ImageReaderUtil.h"
#include "Shared/Cross/RenderAnim/Image/LevelSkip.h"

namespace {

struct DdsHeader {
    uint32_t flags = 0;
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t mipCount = 1;
    uint32_t formatFlags = 0;
    uint32_t fourCC = 0;
    uint32_t caps = 0;
    uint32_t caps2 = 0;
};

bool ReadHeader(ByteStream& stream, DdsHeader& header) {
    uint8_t bytes[s_DdsHeaderSize];
    if (stream.Read(bytes, sizeof(bytes)) != sizeof(bytes))
        return false;
    const auto get = [&bytes](size_t offset) { return GetLittle<uint32_t>(bytes + offset); };
    header = {.flags = get(8),
              .width = get(16),
              .height = get(12),
              .mipCount = get(28),
              .formatFlags = get(80),
              .fourCC = get(84),
              .caps = get(108),
              .caps2 = get(112)};
    return get(0) == s_DdsMagic && get(4) == s_DdsSizeField && get(76) == s_DdsPixelFormatSize &&
           (header.flags & s_DdsFlagsNeeded) == s_DdsFlagsNeeded;
}

void ReportBadTool(const char* pName) {
    dbWarningf("TEXTURE FORMAT -- The tool used to create the DDS file '%s' did not save it correctly, please check "
               "for an updated version of the tool.",
               pName);
}

// Neither a cube nor a volume; those have their line.
bool CheckFlat(const DdsHeader& header, const char* pName) {
    const bool isCube = header.caps2 & s_DdsCaps2CubeMap;
    const bool isVolume = header.caps2 & s_DdsCaps2Volume;
    if ((isCube || isVolume) && !(header.caps & s_DdsCapsComplex))
        ReportBadTool(pName);
    if (isCube)
        dbWarningf("Does not support loading of cube maps [%s].", pName);
    else if (isVolume)
        dbWarningf("Does not support loading of volume textures [%s].", pName);
    return !isCube && !isVolume;
}

// The levels that the file says it has, 0 when there can't be so many.
uint32_t GetMipCount(const DdsHeader& header, const char* pName) {
    if (!(header.flags & s_DdsFlagMipCount))
        return 1;
    if (!(header.caps & s_DdsCapsMipMap) || header.mipCount == 0)
        ReportBadTool(pName);
    const uint32_t most = Image::GetMaxMipCount(header.width, header.height);
    if (header.mipCount > most) {
        dbWarningf("TEXTURES -- '%s': the DDS says %u levels; %ux%u pixels have up to %u", pName, header.mipCount,
                   header.width, header.height, most);
        return 0;
    }
    return std::max(header.mipCount, 1u);
}

bool GetType(const DdsHeader& header, const char* pName, ImageType& type) {
    switch (header.fourCC) {
    case s_DdsDxt1:
        type = IMAGETYPE_DXT1;
        return true;
    case s_DdsDxt3:
        type = IMAGETYPE_DXT3;
        return true;
    case s_DdsDxt5:
        type = IMAGETYPE_DXT5;
        return true;
    default:
        dbWarningf("Unsupported FourCC code in [%s].", pName);
        return false;
    }
}

bool ReadLevels(ByteStream& stream, Image& image) {
    for (uint32_t level = 0; level < image.GetMipCount(); ++level) {
        const std::span<uint8_t> data = image.GetData(level);
        if (stream.Read(data.data(), static_cast<uint32_t>(data.size())) != data.size())
            return false;
    }
    return true;
}

} // namespace

std::unique_ptr<Image> ReadDds(const ImageReaderArgs& args, uint32_t& outFlags) {
    if (!args.pStream)
        return Refuse(args.pName, "Unable to open file!");
    DdsHeader header;
    if (!ReadHeader(*args.pStream, header))
        return RefuseNameLast("DDS is not happy.", args.pName);
    ImageType type = IMAGETYPE_DXT1;
    if (!CheckFlat(header, args.pName) || !GetType(header, args.pName, type) ||
        !CheckSides(args.pName, type, header.width, header.height))
        return nullptr;
    const uint32_t mipCount = GetMipCount(header, args.pName);
    if (mipCount == 0)
        return nullptr;
    const uint32_t skip = ClampLevelSkip(type, header.width, header.height, mipCount, args.levelsToSkip);
    const bool isWhole = GetBytesAhead(*args.pStream) >= Image::GetSizeFor(type, header.width, header.height, mipCount);
    const auto skipSize = static_cast<uint32_t>(Image::GetSizeFor(type, header.width, header.height, skip));
    std::unique_ptr<Image> pImage;
    if (isWhole && args.pStream->Seek(s_DdsHeaderSize + skipSize))
        pImage = Image::Create(type, std::max(1u, header.width >> skip), std::max(1u, header.height >> skip),
                               mipCount - skip);
    if (!pImage || !ReadLevels(*args.pStream, *pImage))
        return RefuseWithoutName("Malformed DDS file.  Not enough file for image.");
    const bool hasAlpha = type != IMAGETYPE_DXT1 || (header.formatFlags & s_DdsFormatAlpha);
    outFlags = hasAlpha ? ImageLoad::Flags_Alpha : ImageLoad::Flags_NoAlpha;
    return pImage;
}
