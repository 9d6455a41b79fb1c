#include "Shared/Cross/RenderAnim/Generic/AnimChunk.h"

#include <optional>
#include <string>
#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimParts.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Generic/AnimDataReader.h"
#include "Shared/Cross/RenderAnim/Generic/AnimLayout.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace ra::generic {

namespace {

struct Bounds {
    glm::vec3 minimum;
    glm::vec3 maximum;
};

// Writing

void WriteBone(Chunky& chunky, const Anim::BoneStream& bone) {
    chunky.BeginData(s_BoneAnimChunk, s_BoneAnimVersion, bone.name.GetText());
    WriteKeys(chunky, bone.pPosition.get());
    WriteKeys(chunky, bone.pRotation.get());
    WriteAnimField(chunky, static_cast<uint8_t>(bone.isAnimated));
    chunky.EndChunk();
}

void WriteData(Chunky& chunky, const RenderModel& model, const Anim& anim) {
    // Keys in the world are the other form's.
    dbAssertText(!dynamic_cast<const AnimInterm*>(&anim), "!dynamic_cast<const AnimInterm*>(&anim)");
    chunky.BeginFolder(s_AnimDataChunk, s_AnimDataVersion, anim.GetName());
    WriteAnimInfo(chunky, anim, s_AnimInfoVersion);
    for (uint32_t i = 0; model.GetSkeleton() && i < anim.GetBoneCount(); ++i)
        WriteBone(chunky, anim.GetBone(static_cast<int32_t>(i)));
    for (uint32_t i = 0; i < anim.GetControlCount(); ++i)
        WriteControlAnim(chunky, anim.GetControl(static_cast<int32_t>(i)), s_ControlAnimChunk, s_ControlAnimVersion);
    for (uint32_t i = 0; i < anim.GetCameraCount(); ++i)
        WriteCameraAnim(chunky, anim.GetCamera(static_cast<int32_t>(i)));
    chunky.EndChunk();
}

void WriteXRef(Chunky& chunky, PayloadWriter& writer, const AnimListNode& node) {
    writer.WriteString(node.GetXRefModel().GetText());
    writer.WriteString(node.GetAnim()->GetName());
    writer.WriteChunk(chunky, s_XRefAnimChunk, s_XRefAnimVersion);
}

void WriteBounds(Chunky& chunky, PayloadWriter& writer, const AnimListNode& node) {
    writer.WriteVec3(node.GetMinimum());
    writer.WriteVec3(node.GetMaximum());
    writer.WriteChunk(chunky, s_AnimBoundsChunk, s_AnimBoundsVersion, node.GetAnim()->GetName());
}

// Reading

// Directory and file name of a whole path.
std::string StripDriveAndExtension(const std::string& path) {
    const size_t drive = path.rfind(':');
    std::string name = drive == std::string::npos ? path : path.substr(drive + 1);
    const size_t dot = name.rfind('.');
    if (dot != std::string::npos && name.find_first_of("/\\", dot) == std::string::npos)
        name.erase(dot);
    return name;
}

std::unique_ptr<AnimListNode> ReadXRef(Chunky& chunky, const RenderModel& model, const char* pName) {
    const ChunkInfo info = EnterData(chunky, s_XRefAnimChunk, s_OldestVersion, s_XRefAnimVersion);
    PayloadReader reader(chunky, "animation", pName);
    std::string xrefModel = reader.ReadString("model name");
    const std::string animName = reader.ReadString("animation name");
    chunky.EndChunk();
    if (info.version < 2)
        xrefModel = StripDriveAndExtension(xrefModel);
    return MakeXRefNode(model, xrefModel.c_str(), animName.c_str());
}

Bounds ReadBounds(Chunky& chunky, const char* pName) {
    EnterData(chunky, s_AnimBoundsChunk, s_AnimBoundsVersion, s_AnimBoundsVersion);
    PayloadReader reader(chunky, "animation", pName);
    Bounds bounds;
    bounds.minimum = reader.ReadVec3("minimum");
    bounds.maximum = reader.ReadVec3("maximum");
    chunky.EndChunk();
    return bounds;
}

class NodeReader {
public:
    NodeReader(Chunky& chunky, const RenderModel& model) : m_Chunky(chunky), m_Model(model) {}

    // Null for an animation that the model has already.
    std::unique_ptr<AnimListNode> Read(uint32_t& version) {
        const ChunkInfo info = m_Chunky.EnterFolder(s_AnimChunk, s_AnimVersion);
        version = info.version;
        m_Name = info.name;
        for (ChunkInfo child; m_Chunky.NextChunk(child);)
            ReadChild(child);
        if (!m_Found)
            throw Chunky::Exception(ChunkyError_MissingChunk,
                                    std::string("Missing Chunk Type! (data of animation '") + m_Name.GetText() + "')");
        m_Chunky.EndChunk();
        if (m_pNode && m_Bounds)
            m_pNode->SetBounds(m_Bounds->minimum, m_Bounds->maximum);
        return std::move(m_pNode);
    }

private:
    void ReadChild(const ChunkInfo& child) {
        const bool isData = child.kind == ChunkKind_Data;
        if (!isData && child.id == s_AnimDataChunk && !m_Found) {
            m_Found = true;
            m_pNode = MakeLocalNode(m_Model, ReadAnimData(m_Chunky, m_Model, m_Name.GetText()));
        } else if (isData && child.id == s_XRefAnimChunk && !m_Found) {
            m_Found = true;
            m_pNode = ReadXRef(m_Chunky, m_Model, m_Name.GetText());
        } else if (isData && child.id == s_AnimBoundsChunk)
            m_Bounds = ReadBounds(m_Chunky, m_Name.GetText());
    }

    Chunky& m_Chunky;
    const RenderModel& m_Model;
    RefCountString m_Name;
    bool m_Found = false;
    std::unique_ptr<AnimListNode> m_pNode;
    std::optional<Bounds> m_Bounds;
};

} // namespace

void WriteAnim(Chunky& chunky, const RenderModel& model, const AnimListNode& node) {
    PayloadWriter writer;
    chunky.BeginFolder(s_AnimChunk, s_AnimVersion, node.GetAnim()->GetName());
    if (node.IsLocal())
        WriteData(chunky, model, *node.GetAnim().GetData());
    else
        WriteXRef(chunky, writer, node);
    if (node.HasBounds())
        WriteBounds(chunky, writer, node);
    chunky.EndChunk();
}

void AppendAnim(Chunky& chunky, RenderModel& model) {
    uint32_t version = 0;
    if (std::unique_ptr<AnimListNode> pNode = NodeReader(chunky, model).Read(version))
        AddAnimNode(model, std::move(pNode), version);
}

} // namespace ra::generic
