#pragma once

#include <memory>
#include <vector>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"

namespace ra {

// One pass over the children of a model's chunk, in the order of the file, for the intermediate and the generic form.
// A child is read as soon as it is met, and refers to those ahead of it. What isn't known is stepped over.
class ModelTreeReader {
public:
    ModelTreeReader(Chunky& chunky, RenderModel& model) : m_Chunky(chunky), m_Model(model) {}
    virtual ~ModelTreeReader() = default;
    ModelTreeReader(const ModelTreeReader&) = delete;
    ModelTreeReader& operator=(const ModelTreeReader&) = delete;

    // False when a child makes no sense; that is logged.
    bool Read();

protected:
    // What the forms have of their own. The next chunk is a "SKEL" of either kind, which `child` describes; the model
    // has just been given its meshes; the next chunk is an "ANIM", and the model has a skeleton.
    virtual void ReadSkeleton(const ChunkInfo& child) = 0;
    virtual void OnMeshGroup(MeshGroup&) {}
    virtual void ReadAnim() = 0;

    // Throws for a second one, since what has been read goes by the first.
    void SetSkeleton(std::unique_ptr<Skeleton> pSkeleton);

    Chunky& m_Chunky;
    RenderModel& m_Model;
    std::vector<ShaderRef> m_Shaders; // read so far

private:
    bool ReadFolder(const ChunkInfo& child);
    void ReadData(uint32_t id);
    void ReadMeshes();

    std::vector<TextureRef> m_Textures; // held until the shaders that want them have come
};

// Enters the model's chunk of a stream and makes the model by such a reader. Null for a model that makes no sense,
// which is logged.
template <class Reader>
std::unique_ptr<RenderModel> ReadModelTree(ByteStream& stream) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    const ChunkInfo info = chunky.EnterFolder(s_ModelChunk, s_ModelVersion);
    auto pModel = std::make_unique<RenderModel>();
    pModel->SetName(info.name.GetText());
    if (!Reader(chunky, *pModel).Read())
        return nullptr;
    chunky.EndChunk();
    return pModel;
}

} // namespace ra
