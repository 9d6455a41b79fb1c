#include "Tools/pvxdump/TextureContent.h"

#include <memory>
#include <utility>
#include <vector>

#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Image/ImageChunks.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Tools/pvxdump/TextureFiles.h"

namespace {

constexpr uint32_t s_HeadChunk = FourCC("HEAD");

void AddImage(TextureContent& content, const ImageAttributes& image) {
    if (content.levelCount == 0) {
        content.imageType = image.type;
        content.width = image.width;
        content.height = image.height;
    }
    content.levelCount += image.mipCount;
    content.size += Image::GetSizeFor(image.type, image.width, image.height, image.mipCount);
}

std::string WritePicture(TextureFiles& files, const std::string& name, std::vector<std::unique_ptr<Image>> images) {
    Texture texture;
    texture.SetName(name.c_str());
    if (!texture.SetImages(std::move(images)))
        throw Chunky::Exception(ChunkyError_BadChunk,
                                "texture '" + name + "': its images are no levels of one texture");
    return files.Write(texture);
}

} // namespace

TextureContent ReadTextureContent(Chunky& chunky, TextureFiles* pFiles) {
    const ChunkInfo folder = chunky.EnterFolder(ra::s_TextureChunk, s_TextureVersion);
    TextureContent content;
    content.name = folder.name.GetView();
    std::vector<std::unique_ptr<Image>> images;
    for (ChunkInfo child; chunky.NextChunk(child);) {
        content.isFinal |= child.kind == ChunkKind_Data && child.id == s_HeadChunk;
        if (child.kind != ChunkKind_Folder || child.id != s_ImageChunk)
            continue;
        if (pFiles) {
            const Image& image = *images.emplace_back(ReadImage(chunky));
            AddImage(content, {.type = image.GetType(),
                               .width = image.GetWidth(),
                               .height = image.GetHeight(),
                               .mipCount = image.GetMipCount()});
        } else {
            AddImage(content, ReadImageAttributes(chunky));
        }
    }
    chunky.EndChunk();
    if (!images.empty())
        content.file = WritePicture(*pFiles, content.name, std::move(images));
    return content;
}
