#include "Shared/Cross/RenderAnim/TextureConvert.h"

#include <algorithm>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Image/DxtcCompression.h"
#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"
#include "Shared/Cross/RenderAnim/Image/MipMap.h"
#include "Shared/Cross/RenderAnim/Image/Palette.h"
#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"
#include "Shared/Cross/RenderAnim/Texture.h"

namespace {

const char* NameOf(const Inv::NamedResource& resource) { return resource.GetName() ? resource.GetName() : ""; }

uint32_t LargestSide(const Image& image) { return std::max(image.GetWidth(), image.GetHeight()); }

std::unique_ptr<Image> Downsize(std::unique_ptr<Image> pImage, uint32_t maxSide) {
    dbWarningf("Creating temporary image for texture downsizing. [%s]", NameOf(*pImage));
    while (LargestSide(*pImage) > maxSide && pImage->GetMipCount() > 1)
        pImage->DropFirstLevel();
    if (LargestSide(*pImage) <= maxSide)
        return pImage;
    uint32_t halvings = 0;
    while (LargestSide(*pImage) >> halvings > maxSide)
        ++halvings;
    std::unique_ptr<Image> pColours;
    const Image* pSource = pImage.get();
    if (pImage->GetType() != IMAGETYPE_RGBA32) {
        pColours = Convert(IMAGETYPE_RGBA32, *pImage);
        pSource = pColours.get();
    }
    std::unique_ptr<Image> pSmaller;
    if (pSource)
        pSmaller = Rescale(*pSource, std::max(1u, pSource->GetWidth() >> halvings),
                           std::max(1u, pSource->GetHeight() >> halvings));
    if (pSmaller && pImage->GetName())
        pSmaller->SetName(pImage->GetName());
    return pSmaller;
}

ImageType CompressedTypeOf(uint32_t useDXTC) {
    switch (useDXTC) {
    case 1:
        return IMAGETYPE_DXT1;
    case 3:
        return IMAGETYPE_DXT3;
    case 5:
        return IMAGETYPE_DXT5;
    default:
        return IMAGETYPE_KEEP;
    }
}

bool IsInColours(TextureType type) { return type <= TextureType_RGBAMask; }

void CopyLevel(Image& to, uint32_t toLevel, const Image& from, uint32_t fromLevel) {
    std::ranges::copy(from.GetData(fromLevel), to.GetData(toLevel).begin());
    if (Image_Palette* pPaletted = ImageCast<Image_Palette>(&to))
        pPaletted->GetPalette() = ImageCast<Image_Palette>(&from)->GetPalette();
}

std::unique_ptr<Image> CopyOf(const Image& image, uint32_t level) {
    std::unique_ptr<Image> pCopy = Image::Create(image.GetType(), image.GetWidth(level), image.GetHeight(level));
    if (pCopy)
        CopyLevel(*pCopy, 0, image, level);
    return pCopy;
}

std::unique_ptr<Image> Compress(const Image_RGBA32& image, uint32_t level, ImageType format) {
    const uint32_t width = image.GetWidth(level);
    const uint32_t height = image.GetHeight(level);
    if (!Image::AreSidesAllowed(format, width, height))
        return nullptr;
    std::unique_ptr<Image> pBlocks = Image::Create(format, width, height);
    if (!DXTC_DoCompression(image.GetPixels(level), width, height, format, pBlocks->GetData()))
        return nullptr;
    return pBlocks;
}

// The source may be of any type in colours.
std::unique_ptr<Image> CompressLevel(const Image& image, uint32_t level, ImageType format) {
    if (const auto* pColours = ImageCast<Image_RGBA32>(&image))
        return Compress(*pColours, level, format);
    const std::unique_ptr<Image> pCopy = CopyOf(image, level);
    const std::unique_ptr<Image> pColours = pCopy ? Convert(IMAGETYPE_RGBA32, *pCopy) : nullptr;
    return pColours ? Compress(*ImageCast<Image_RGBA32>(pColours.get()), 0, format) : nullptr;
}

} // namespace

std::unique_ptr<Texture> Image2Texture(std::unique_ptr<Image> pImage, const TextureOptions& options) {
    dbAssert(pImage);
    if (!pImage)
        return nullptr;
    if (LargestSide(*pImage) > options.maxSide)
        pImage = Downsize(std::move(pImage), options.maxSide);
    if (!pImage)
        return nullptr;
    if (options.makeMips && pImage->GetMipCount() == 1)
        CreateMipLevels(*pImage, Image::GetMaxMipCount(pImage->GetWidth(), pImage->GetHeight()));
    auto pTexture = std::make_unique<Texture>();
    if (!pTexture->SetImage(std::move(pImage)))
        return nullptr;
    return pTexture;
}

std::unique_ptr<Image> Texture2Image(const Texture& texture, uint32_t level, uint32_t useDXTC) {
    if (level >= texture.GetLevelCount()) {
        dbWarningf("Mip level doesn't exist in Texture2Image()");
        return nullptr;
    }
    const auto [pImage, imageLevel] = texture.GetLevel(level);
    const ImageType format = CompressedTypeOf(useDXTC);
    std::unique_ptr<Image> pResult;
    if (format != IMAGETYPE_KEEP && IsInColours(texture.GetType())) {
        pResult = CompressLevel(*pImage, imageLevel, format);
        if (!pResult)
            dbWarningf("Unable to compress RGB/RGBA texture to DXTC");
    } else {
        pResult = CopyOf(*pImage, imageLevel);
        if (!pResult)
            dbWarningf("Unable to do texture-to-image conversion");
    }
    if (pResult && pImage->GetName())
        pResult->SetName(pImage->GetName());
    return pResult;
}

std::unique_ptr<Image> Texture2Image(const Texture& texture) {
    const uint32_t levelCount = texture.GetLevelCount();
    if (levelCount == 0) {
        dbWarningf("Unable to do texture-to-image conversion");
        return nullptr;
    }
    const Image& first = *texture.GetLevel(0).pImage;
    std::unique_ptr<Image> pAll = Image::Create(first.GetType(), first.GetWidth(), first.GetHeight(), levelCount);
    for (uint32_t level = 0; level < levelCount; ++level) {
        const auto [pImage, imageLevel] = texture.GetLevel(level);
        CopyLevel(*pAll, level, *pImage, imageLevel);
    }
    if (first.GetName())
        pAll->SetName(first.GetName());
    return pAll;
}
