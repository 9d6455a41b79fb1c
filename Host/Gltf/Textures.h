#pragma once

#include "Host/Gltf/Messages.h"
#include "Host/Gltf/Names.h"
#include "Host/Gltf/SceneFile.h"

#include <string>
#include <vector>

namespace gltf {

// What a glTF texture says of itself: its image's file and how it is sampled.
struct TextureInfo {
    std::string name; // for messages: the image's
    std::string path; // in the system's form; empty when the texture has no image
    int tiling = 0;   // bits of U_WRAP and its like
    int filter = 0;   // one of the FILTER_ values
};

// Where the images of a scene lie. `.tga .dds .jpg .jpeg .bmp .bw` stay where they are. All others, and those that are
// embedded, belong into the folder `<scene stem>.textures` beside the scene, under the image's name: JPEG as `.jpg`,
// anything else as `.tga`.
class Textures {
public:
    Textures(const SceneFile& file, const std::string& path, const Messages& messages);

    size_t GetCount() const { return m_Textures.size(); }
    const TextureInfo& Get(size_t texture) const { return m_Textures[texture]; }

private:
    struct Image {
        std::string name;
        std::string path;
    };
    void ReadImages(const std::string& path);
    Image ReadImage(const Json& json, size_t index, const std::string& unpackFolder, UniqueNames& names) const;
    void ReadTexture(const Json& json);

    const SceneFile& m_File;
    const Messages& m_Messages;
    std::vector<Image> m_Images;
    std::vector<TextureInfo> m_Textures;
};

} // namespace gltf
