#include "Shared/Cross/RenderAnim/Files/TextureFile.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/FileReplacement.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalTextureChunk.h"
#include "Shared/Cross/RenderAnim/Image/ImageChunks.h"
#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"
#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Shared/Cross/RenderAnim/Texture.h"

namespace ra {

namespace {

constexpr char s_TextureExtension[] = "rtx";

bool IsTextureFile(const char* pPath) { return FilePathUtil::HasExtension(pPath, s_TextureExtension); }

std::unique_ptr<ByteStream> OpenTextureFile(const char* pPath) {
    std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(pPath, ByteStream::Mode_Read);
    if (!pStream)
        dbWarningf("TEXTURES -- '%s': Unable to open file!", pPath);
    return pStream;
}

std::unique_ptr<Texture> LoadPicture(const char* pPath, const TextureOptions& options) {
    uint32_t flags = 0;
    std::unique_ptr<Image> pImage = ImageLoad::Load(flags, pPath);
    if (!pImage)
        return nullptr;
    // As part of a model it would make a file that nobody can read.
    if (!CanStoreImage(pImage->GetType(), pImage->GetWidth(), pImage->GetHeight())) {
        dbWarningf("TEXTURES -- '%s': %ux%u pixels; a compressed texture has 4 or more a side; save it uncompressed",
                   pPath, pImage->GetWidth(), pImage->GetHeight());
        return nullptr;
    }
    return Image2Texture(std::move(pImage), options);
}

bool SaveTextureFile(const char* pPath, const Texture& texture) {
    const std::unique_ptr<FileReplacement> pFile = FilePath::ReplaceFile(pPath);
    if (!pFile) {
        dbWarningf("TEXTURES -- '%s': Unable to open file!", pPath);
        return false;
    }
    {
        Chunky chunky{ByteStreamAdapter(&pFile->GetStream())};
        PayloadWriter writer;
        WriteTexture(chunky, writer, texture);
    }
    if (pFile->Finish())
        return true;
    dbWarningf("TEXTURES -- '%s': Unable to write to file!", pPath);
    return false;
}

std::unique_ptr<Image> MakePicture(const Texture& texture, uint32_t useDXTC) {
    std::unique_ptr<Image> pImage = useDXTC == 0 && texture.GetType() >= TextureType_DXT1
                                        ? Texture2Image(texture)
                                        : Texture2Image(texture, 0, useDXTC);
    if (!pImage || pImage->GetType() == IMAGETYPE_RGBA32 || pImage->GetType() == IMAGETYPE_RGB888 ||
        Image::IsTypeCompressed(pImage->GetType()))
        return pImage;
    return Convert(IMAGETYPE_RGBA32, *pImage);
}

} // namespace

std::unique_ptr<Texture> TextureLoadGeneric(const char* pPath, const TextureOptions& options) {
    if (!IsTextureFile(pPath))
        return LoadPicture(pPath, options);
    const std::unique_ptr<ByteStream> pStream = OpenTextureFile(pPath);
    if (!pStream)
        return nullptr;
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    return TextureLoadGeneric(chunky, options);
}

std::unique_ptr<Texture> TextureLoadFinal(const char* pPath, uint32_t levelsToSkip) {
    if (!IsTextureFile(pPath))
        return LoadPicture(pPath, {});
    const std::unique_ptr<ByteStream> pStream = OpenTextureFile(pPath);
    if (!pStream)
        return nullptr;
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    return TextureLoadFinal(chunky, levelsToSkip);
}

bool SaveTexture(const char* pPath, const Texture& texture, uint32_t useDXTC) {
    if (IsTextureFile(pPath))
        return SaveTextureFile(pPath, texture);
    const std::unique_ptr<Image> pImage = MakePicture(texture, useDXTC);
    return pImage && ImageLoad::Save(pPath, *pImage);
}

} // namespace ra
