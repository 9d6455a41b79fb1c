#pragma once

#include "Host/Gltf/Messages.h"
#include "Host/Gltf/Names.h"
#include "Host/Gltf/SceneFile.h"
#include "Host/Gltf/Unpack.h"

#include <string>
#include <vector>

namespace gltf {

class BufferStore;

// What a glTF texture says of itself: its image's file and how it is sampled.
struct TextureInfo {
    std::string name; // for messages: the image's
    std::string path; // in the system's form; empty when the texture has no image
    int tiling = 0;   // bits of U_WRAP and its like
    int filter = 0;   // one of the FILTER_ values
};

// Where the images of a scene lie. `.tga .dds .jpg .jpeg .bmp .bw` stay where they are. All others, and those that are
// embedded, are unpacked into the folder `<scene stem>.textures` beside the scene, under the image's name: JPEG as
// `.jpg`, anything else as `.tga`. The names are the same whichever of the images are used.
class Textures {
public:
    // `path` is the scene's. All of these have to live as long.
    Textures(const SceneFile& file, const std::string& path, BufferStore& buffers, const Messages& messages);

    size_t GetCount() const { return m_Textures.size(); }
    const TextureInfo& Get(size_t texture) const { return m_Textures[texture]; }
    // Sees to it that the texture's image lies at its path, unless it is a file that stays where it is. One that was
    // unpacked after the scene's last change, and the image's, is left alone, unless another scene may have done it. An
    // image that can't be unpacked is a
    // warning, once; a path that is longer than any that the exporter opens is a fault.
    void Unpack(size_t texture);

private:
    struct Image {
        std::string name;
        std::string path;
        bool isUnpacked = false; // done, or nothing to do
    };
    struct ImageBytes;
    void ReadImages(const std::string& path);
    Image ReadImage(const Json& json, size_t index, UniqueNames& names);
    void ReadTexture(const Json& json);
    std::string GetFile(const Json& json) const;
    ImageKind FindKind(const Place& place, const Json& json);
    ImageBytes GetBytes(const Place& place, const Json& json, bool startAlone);

    const SceneFile& m_File;
    std::string m_Path;
    std::string m_UnpackFolder;
    bool m_IsPrepared = false; // the folder is clean of what ended processes left
    bool m_HasTwin = false;    // known then: another scene unpacks into the folder
    BufferStore& m_Buffers;
    const Messages& m_Messages;
    std::vector<Image> m_Images;
    std::vector<TextureInfo> m_Textures;
    std::vector<int32_t> m_Sources; // by texture: its image, or -1
};

} // namespace gltf
