#include "Shared/Cross/RenderAnim/TextureTypeInfo.h"

#include <algorithm>
#include <bit>
#include <cstdio>

#include "Shared/Cross/Assist/DebugToolDumpInfo.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/Colour.h"
#include "Shared/Cross/RenderAnim/Image/Pixelmap.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/Util/Hash.h"

namespace {

constexpr char s_MissingTexture[] = "art/textures/missingtexture";

constinit ra::ResourceLoaders<Texture> s_textureLoaders;

// The columns "Bytes Used,Width,Height,Power of Two,Texture Type" of a dump of textures.
std::string Describe(const Texture& texture) {
    const bool powerOfTwo = std::has_single_bit(texture.GetWidth()) && std::has_single_bit(texture.GetHeight());
    char text[128];
    std::snprintf(text, sizeof(text), "%d,%d,%d,%s,%s", static_cast<int>(texture.GetSize()),
                  static_cast<int>(texture.GetWidth()), static_cast<int>(texture.GetHeight()),
                  powerOfTwo ? "Yes" : "No", GetTextureTypeName(texture.GetType()));
    return text;
}

} // namespace

void TextureTypeInfo::TranslateName(std::string& outName, const char* pName) const {
    if (FilePathUtil::HasAlias(pName)) {
        ResourceTypeInfo::TranslateName(outName, pName);
        return;
    }
    outName = pName;
    std::ranges::transform(outName, outName.begin(), ToLower);
}

std::unique_ptr<Inv::NamedResource> TextureTypeInfo::CreateDefault(const char*) {
    if (std::unique_ptr<Inv::NamedResource> pMissing = Load(s_MissingTexture))
        return pMissing;
    std::unique_ptr<Image> pPixel = Image::Create(IMAGETYPE_RGBA32, 1, 1);
    ImageCast<Image_RGBA32>(pPixel.get())->GetPixels()[0] = s_MissingTextureColour;
    auto pTexture = std::make_unique<Texture>();
    pTexture->SetImage(std::move(pPixel));
    return pTexture;
}

std::unique_ptr<Inv::NamedResource> TextureTypeInfo::Load(const char* pName) { return s_textureLoaders.Load(pName); }

void TextureTypeInfo::Report(Inv::DebugToolDumpInfo& sink, const Inv::Resource& resource, const char* pName,
                             const char* pFrameName, uint32_t refCount) const {
    const auto* pTexture = static_cast<const Texture*>(resource.GetData());
    sink.Add({.typeName = GetTypeName(),
              .name = pName,
              .frame = pFrameName,
              .refCount = refCount,
              .details = pTexture ? Describe(*pTexture) : std::string()});
}

void TextureTypeInfo::SetLoaders(Loader pGeneric, Loader pFinal) {
    s_textureLoaders = {.pGeneric = pGeneric, .pFinal = pFinal};
}
