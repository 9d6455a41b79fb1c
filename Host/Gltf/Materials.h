#pragma once

#include "Host/Gltf/Messages.h"
#include "Host/Gltf/Names.h"
#include "Host/Gltf/SceneFile.h"

#include <map>
#include <span>
#include <string>
#include <vector>

class Mtl;

namespace scene {
class Scene;
}

namespace gltf {

class BufferStore;

// The materials of a file as materials of the host. Those of the scene are made once and shared.
class Materials {
public:
    // Makes all of the file's materials, and unpacks the images that they use. `path` is the scene's; textures are
    // named beside it. No material gets a name of `taken`.
    Materials(const SceneFile& file, const std::string& path, BufferStore& buffers, const Messages& messages,
              scene::Scene& scene, std::span<const std::string> taken);

    // What a mesh with these glTF materials (-1: none), one for each material id, gets as a node's material: nothing,
    // the one there is, or a multi-sub material with `meshName`.
    Mtl* GetForMesh(const std::vector<int32_t>& materials, std::string_view meshName);

    // By material: the set of texture coordinates that its textures lie on.
    const std::vector<uint32_t>& GetTexCoordSets() const { return m_TexCoordSets; }

private:
    Mtl& GetDefault();

    scene::Scene& m_Scene;
    UniqueNames m_Names;
    std::vector<Mtl*> m_Materials;
    std::vector<uint32_t> m_TexCoordSets;
    std::map<std::vector<int32_t>, Mtl*> m_Multis;
    Mtl* m_pDefault = nullptr;
};

} // namespace gltf
