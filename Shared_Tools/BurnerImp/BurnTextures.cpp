#include "Shared_Tools/BurnerImp/BurnTextures.h"

#include "Shared/Cross/RenderAnim/Final/FinalTextureChunk.h"
#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"
#include "Shared/Cross/RenderAnim/Image/MipMap.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/RenderAnim/TextureConvert.h"

#include <algorithm>
#include <memory>

namespace {

// Pixels without alpha can't be reduced, so they are widened for its length.
std::unique_ptr<Image> MakeLevels(std::unique_ptr<Image> pFirst) {
    const ImageType type = pFirst->GetType();
    std::unique_ptr<Image> pImage = type == IMAGETYPE_RGB888 ? Convert(IMAGETYPE_RGBA32, *pFirst) : std::move(pFirst);
    if (!pImage)
        return nullptr;
    CreateMipLevels(*pImage, Image::GetMaxMipCount(pImage->GetWidth(), pImage->GetHeight()));
    return pImage->GetType() == type ? std::move(pImage) : Convert(type, *pImage);
}

bool IsReducible(ImageType type) {
    return type == IMAGETYPE_RGBA32 || type == IMAGETYPE_RGB888 || type == IMAGETYPE_PALETTE8;
}

bool HasToChange(const Texture& texture, bool mipMaps) {
    const uint32_t count = texture.GetLevelCount();
    return mipMaps ? count == 1 && IsReducible(texture.GetLevel(0).pImage->GetType()) : count > 1;
}

void SetLevels(Texture& texture, bool mipMaps) {
    if (!HasToChange(texture, mipMaps))
        return;
    std::unique_ptr<Image> pImage = Texture2Image(texture, 0);
    if (pImage && mipMaps)
        pImage = MakeLevels(std::move(pImage));
    if (pImage && texture.SetImage(std::move(pImage)))
        texture.NameImages();
}

bool IsConvertible(const Texture* pTexture) {
    if (ra::IsTooSmallForDXTC(*pTexture))
        return true;
    const Image& image = *pTexture->GetLevel(0).pImage;
    return Image::AreSidesAllowed(IMAGETYPE_DXT5, image.GetWidth(), image.GetHeight());
}

} // namespace

void SetMipMaps(std::span<const Texture* const> textures, bool mipMaps) {
    // The textures are this burn's own, which was given them for reading.
    for (const Texture* pTexture : textures)
        SetLevels(const_cast<Texture&>(*pTexture), mipMaps);
}

std::string ExplainUnconverted(std::span<const Texture* const> textures) {
    const auto it = std::ranges::find_if_not(textures, IsConvertible);
    if (it == textures.end())
        return "a texture can't be converted";
    const Image& image = *(*it)->GetLevel(0).pImage;
    return std::string("texture '") + (*it)->GetName() + "' of " + std::to_string(image.GetWidth()) + "x" +
           std::to_string(image.GetHeight()) +
           " can't be compressed: its sides have to be powers of two; resize it, or set useDXTC to 0";
}
