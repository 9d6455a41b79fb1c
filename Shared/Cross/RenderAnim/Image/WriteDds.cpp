#include "Shared/Cross/RenderAnim/Image/ImageWriters.h"

#include <cstring>
#include <span>
#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/DdsLayout.h"
#include "Shared/Cross/RenderAnim/Image/ImageWriterUtil.h"

namespace {

uint32_t GetFourCC(ImageType type) {
    switch (type) {
    case IMAGETYPE_DXT1:
        return s_DdsDxt1;
    case IMAGETYPE_DXT3:
        return s_DdsDxt3;
    case IMAGETYPE_DXT5:
        return s_DdsDxt5;
    default:
        return 0;
    }
}

void FillHeader(std::span<uint8_t, s_DdsHeaderSize> header, const Image& image) {
    const auto set = [header](size_t offset, uint32_t value) { std::memcpy(&header[offset], &value, sizeof(value)); };
    const bool hasMips = image.GetMipCount() > 1;
    set(0, s_DdsMagic);
    set(4, s_DdsSizeField);
    set(8, s_DdsFlagsNeeded | s_DdsFlagLinearSize | (hasMips ? s_DdsFlagMipCount : 0));
    set(12, image.GetHeight());
    set(16, image.GetWidth());
    set(20, image.GetDataSize());
    set(28, hasMips ? image.GetMipCount() : 0);
    set(76, s_DdsPixelFormatSize);
    set(80, s_DdsFormatFourCC);
    set(84, GetFourCC(image.GetType()));
    set(108, s_DdsCapsTexture | (hasMips ? s_DdsCapsComplex | s_DdsCapsMipMap : 0));
}

} // namespace

bool WriteDds(const char* pName, const Image& image) {
    if (GetFourCC(image.GetType()) == 0) {
        dbWarningf("TEXTURES -- '%s': Unrecognized image type %d!", pName, static_cast<int>(image.GetType()));
        return false;
    }
    uint8_t header[s_DdsHeaderSize] = {};
    FillHeader(header, image);
    std::vector<std::span<const uint8_t>> parts = {header};
    for (uint32_t level = 0; level < image.GetMipCount(); ++level)
        parts.push_back(image.GetData(level));
    return WritePictureFile(pName, parts);
}
