#include "Shared/Cross/RenderAnim/Final/FinalTextureChunk.h"

#include <algorithm>
#include <string>
#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Image/DxtcCompression.h"
#include "Shared/Cross/RenderAnim/Image/ImageChunks.h"
#include "Shared/Cross/RenderAnim/Texture.h"

// "TXTR", folder, version 1, name of the texture: "HEAD", and for each stored level, the largest first, an "IMAG" of
// one level, which Image/ImageChunks.cpp tells about.
//
// "HEAD", data, version 1:
//   uint32     texture type
//   uint32     stored levels

namespace ra {

namespace {

constexpr uint32_t s_HeadChunk = FourCC("HEAD");
constexpr uint32_t s_TextureVersion = 1;
constexpr uint32_t s_HeadVersion = 1;

// False when one can't be converted.
bool MakeStoredLevels(const Texture& texture, uint32_t useDXTC, std::vector<std::unique_ptr<Image>>& levels) {
    bool complete = true;
    if (texture.GetLevelCount() > 0 && IsTooSmallForDXTC(texture))
        useDXTC = 0;
    for (uint32_t level = 0; level < texture.GetLevelCount(); ++level) {
        std::unique_ptr<Image> pImage = Texture2Image(texture, level, useDXTC);
        if (!pImage) {
            dbWarningf("TEXTURES -- '%s': Unable to convert mip-map %d to an image!", texture.GetName(),
                       static_cast<int>(level));
            complete = false;
            continue;
        }
        if (!CanStoreImage(pImage->GetType(), pImage->GetWidth(), pImage->GetHeight()))
            break;
        levels.push_back(std::move(pImage));
    }
    return complete;
}

uint32_t ReadLevelCount(Chunky& chunky, const char* pName) {
    EnterData(chunky, s_HeadChunk, s_HeadVersion, s_HeadVersion);
    PayloadReader reader(chunky, "texture", pName);
    reader.Read<uint32_t>("texture type"); // follows from the images
    const auto count = reader.Read<uint32_t>("level count");
    chunky.EndChunk();
    return count;
}

// The levels ahead that are wanted. Dropped ones are stepped over without making an image.
std::vector<std::unique_ptr<Image>> ReadLevels(Chunky& chunky, uint32_t count, uint32_t levelsToSkip) {
    std::vector<std::unique_ptr<Image>> levels;
    const uint32_t skip = count > 0 ? std::min(levelsToSkip, count - 1) : 0;
    // The first wanted one is looked at and then entered.
    for (uint32_t level = 0; level <= skip; ++level)
        if (!chunky.FindChunk(ChunkKind_Folder, s_ImageChunk))
            return levels;
    for (uint32_t level = skip; level < count; ++level)
        levels.push_back(ReadImage(chunky));
    return levels;
}

} // namespace

bool IsTooSmallForDXTC(const Texture& texture) {
    const auto [pImage, level] = texture.GetLevel(0);
    return std::min(pImage->GetWidth(level), pImage->GetHeight(level)) < s_DxtcBlockSide;
}

bool WriteFinalTexture(Chunky& chunky, PayloadWriter& writer, const Texture& texture, uint32_t useDXTC) {
    std::vector<std::unique_ptr<Image>> levels;
    const bool complete = MakeStoredLevels(texture, useDXTC, levels);
    chunky.BeginFolder(s_TextureChunk, s_TextureVersion, texture.GetName());
    const TextureType type = levels.empty() ? texture.GetType() : GuessFormat(levels.front()->GetType());
    writer.Write<uint32_t>(type);
    writer.Write(static_cast<uint32_t>(levels.size()));
    writer.WriteChunk(chunky, s_HeadChunk, s_HeadVersion);
    for (const std::unique_ptr<Image>& pImage : levels)
        WriteImage(chunky, *pImage);
    chunky.EndChunk();
    return complete;
}

std::unique_ptr<Texture> TextureLoadFinal(Chunky& chunky, uint32_t levelsToSkip) {
    const ChunkInfo folder = chunky.EnterFolder(s_TextureChunk, s_TextureVersion);
    const std::string name(folder.name.GetView());
    const uint32_t count = ReadLevelCount(chunky, name.c_str());
    std::vector<std::unique_ptr<Image>> levels = ReadLevels(chunky, LimitImages(count), levelsToSkip);
    if (levels.empty())
        throw Chunky::Exception(ChunkyError_BadChunk, "TEXTURES -- '" + name + "': Unable to load images!");
    auto pTexture = std::make_unique<Texture>();
    if (!pTexture->SetImages(std::move(levels)))
        throw Chunky::Exception(ChunkyError_BadChunk,
                                "texture '" + name + "': its images are no levels of one texture");
    chunky.EndChunk();
    pTexture->SetName(name.c_str());
    return pTexture;
}

} // namespace ra
