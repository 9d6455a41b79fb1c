#pragma once

#include <memory>
#include <vector>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"

namespace ra {

// One pass over the children of a model's chunk, in the order of the file. A child is read as soon as it is met, and
// refers to those ahead of it. What isn't known is stepped over.
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
    // is about to be given its meshes; the next chunk is an "ANIM", and the model has a skeleton.
    virtual void ReadSkeleton(const ChunkInfo& child) = 0;
    virtual void OnMeshGroup(MeshGroup&) {}
    virtual void ReadAnim() = 0;

    // What the tools' forms have in common: the list, still empty; the next chunk is a "TXTR", a "SHDR", a "MSGR", or
    // any data or folder but a skeleton. False for a folder that makes no sense; that is logged.
    virtual std::unique_ptr<AnimList> MakeAnimList();
    virtual std::unique_ptr<Texture> ReadTexture();
    virtual std::unique_ptr<Shader> ReadShader();
    virtual std::unique_ptr<MeshGroup> ReadMeshGroup();
    virtual void ReadData(uint32_t id);
    virtual bool ReadFolder(const ChunkInfo& child);

    // Throws for a skeleton of another form, without which the model would be taken for one that has no bones.
    static void CheckSkeletonKind(const ChunkInfo& child, ChunkKind kind);
    // Throws for a second one, since what has been read goes by the first.
    void SetSkeleton(std::unique_ptr<Skeleton> pSkeleton);
    // Throws for a model that has no meshes yet. `pPlace` tells the message where they should have been.
    void BuildReferencePose(const char* pPlace = "");

    Chunky& m_Chunky;
    RenderModel& m_Model;
    std::vector<ShaderRef> m_Shaders; // read so far, and held until the meshes that want them have come

private:
    void SetMeshGroup(std::unique_ptr<MeshGroup> pGroup);

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
