#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Image/ImageChunks.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Texture.h"

// "TXTR", folder, version 1, name of the texture: "INFO", and its images, which Image/ImageChunks.cpp tells about.
//
// "INFO", data, version 3:
//   3 uint32   before version 3 alone; mean nothing
//   uint32     images; the writer stores one with all levels

namespace ra {

namespace {

constexpr uint32_t s_TextureInfoChunk = FourCC("INFO");
constexpr uint32_t s_TextureVersion = 1;
constexpr uint32_t s_TextureInfoVersion = 3;

uint32_t ReadImageCount(Chunky& chunky, const char* pName) {
    const ChunkInfo info = chunky.EnterData(s_TextureInfoChunk, s_TextureInfoVersion);
    PayloadReader reader(chunky, "texture", pName);
    if (info.version < 3)
        for (int i = 0; i < 3; ++i)
            reader.Read<uint32_t>("image count");
    const auto count = reader.Read<uint32_t>("image count");
    chunky.EndChunk();
    return count;
}

bool FitsDevice(const Image& image) {
    return image.GetWidth() <= gz::Texture::MaxSide && image.GetHeight() <= gz::Texture::MaxSide;
}

// A compressed image brings all levels with it, whatever the count says. Of the others each is a level.
std::vector<std::unique_ptr<Image>> ReadImages(Chunky& chunky, uint32_t count) {
    std::vector<std::unique_ptr<Image>> images;
    const auto keep = [&](std::unique_ptr<Image> pImage) {
        if (FitsDevice(*pImage))
            images.push_back(std::move(pImage));
    };
    std::unique_ptr<Image> pFirst = ReadImage(chunky);
    const bool isWhole = Image::IsTypeCompressed(pFirst->GetType());
    if (isWhole || count > 0)
        keep(std::move(pFirst));
    if (isWhole && !images.empty())
        return images;
    for (uint32_t i = 1; i < LimitImages(count); ++i)
        keep(ReadImage(chunky));
    return images;
}

std::unique_ptr<Texture> MakeTexture(std::vector<std::unique_ptr<Image>> images, const TextureOptions& options,
                                     const char* pName) {
    if (images.empty())
        throw Chunky::Exception(ChunkyError_BadChunk,
                                std::string("Unable to load image(s) for texture '") + pName + "'!");
    if (images.size() == 1)
        return Image2Texture(std::move(images.front()), options);
    auto pTexture = std::make_unique<Texture>();
    if (!pTexture->SetImages(std::move(images)))
        throw Chunky::Exception(ChunkyError_BadChunk,
                                std::string("texture '") + pName + "': its images are no levels of one texture");
    return pTexture;
}

} // namespace

void WriteTexture(Chunky& chunky, PayloadWriter& writer, const Texture& texture) {
    chunky.BeginFolder(s_TextureChunk, s_TextureVersion, texture.GetName());
    writer.Write<uint32_t>(1);
    writer.WriteChunk(chunky, s_TextureInfoChunk, s_TextureInfoVersion);
    if (texture.GetImages().size() == 1)
        WriteImage(chunky, *texture.GetImages().front());
    else if (const std::unique_ptr<Image> pAll = Texture2Image(texture))
        WriteImage(chunky, *pAll);
    chunky.EndChunk();
}

std::unique_ptr<Texture> TextureLoadGeneric(Chunky& chunky, const TextureOptions& options) {
    const ChunkInfo folder = chunky.EnterFolder(s_TextureChunk, s_TextureVersion);
    const std::string name(folder.name.GetView());
    const uint32_t count = ReadImageCount(chunky, name.c_str());
    std::unique_ptr<Texture> pTexture = MakeTexture(ReadImages(chunky, count), options, name.c_str());
    chunky.EndChunk();
    if (!pTexture)
        throw Chunky::Exception(ChunkyError_BadChunk, "Unable to load image(s) for texture '" + name + "'!");
    pTexture->SetName(name.c_str());
    return pTexture;
}

TextureRef AddTexture(std::unique_ptr<Texture> pTexture) {
    TextureRef texture;
    texture.Set(std::move(pTexture));
    return texture;
}

std::vector<const Texture*> CollectTextures(std::span<const Shader* const> shaders) {
    std::vector<const Texture*> textures;
    std::unordered_set<const Texture*> known; // only ever looked up
    for (const Shader* pShader : shaders) {
        if (!pShader || pShader->IsShared())
            continue;
        // One channel more than a shader's record has.
        for (uint32_t n = 0; n < CN_Count; ++n) {
            const Texture* pTexture = pShader->GetChannelTexture(n).GetData();
            if (pTexture && pTexture->GetName() && *pTexture->GetName() && pTexture->GetLevelCount() > 0 &&
                known.insert(pTexture).second)
                textures.push_back(pTexture);
        }
    }
    return textures;
}

std::vector<const Texture*> CollectTextures(const MeshGroup& group) {
    std::vector<const Shader*> shaders;
    for (uint32_t i = 0; i < group.GetShaderCount(); ++i)
        if (group.IsShaderOwned(i))
            shaders.push_back(group.GetShader(i).GetData());
    return CollectTextures(shaders);
}

void WriteTextures(Chunky& chunky, PayloadWriter& writer, const MeshGroup& group) {
    for (const Texture* pTexture : CollectTextures(group))
        WriteTexture(chunky, writer, *pTexture);
}

} // namespace ra
