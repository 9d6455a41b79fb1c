#include "Shared/Cross/RenderAnim/Generic/AnimChunk.h"

#include <string>
#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListNode.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimParts.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Generic/AnimDataReader.h"
#include "Shared/Cross/RenderAnim/Generic/AnimLayout.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace ra::generic {

namespace {

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

class RecordReader {
public:
    RecordReader(Chunky& chunky, const RenderModel* pModel) : m_Chunky(chunky), m_pModel(pModel) {}

    AnimRecord Read() {
        const ChunkInfo info = m_Chunky.EnterFolder(s_AnimChunk, s_AnimVersion);
        m_Record.name = info.name.GetView();
        m_Record.version = info.version;
        for (ChunkInfo child; m_Chunky.NextChunk(child);)
            ReadChild(child);
        if (!m_Found)
            throw Chunky::Exception(ChunkyError_MissingChunk,
                                    "Missing Chunk Type! (data of animation '" + m_Record.name + "')");
        m_Chunky.EndChunk();
        return std::move(m_Record);
    }

private:
    void ReadChild(const ChunkInfo& child) {
        const bool isData = child.kind == ChunkKind_Data;
        if (!isData && child.id == s_AnimDataChunk && !m_Found) {
            m_Found = true;
            m_Record.pAnim = ReadAnimData(m_Chunky, m_pModel, m_Record.name.c_str());
        } else if (isData && child.id == s_XRefAnimChunk && !m_Found) {
            m_Found = true;
            if (ReadXRefAnim(m_Chunky, m_Record, s_XRefAnimVersion) < 2)
                m_Record.xrefModel = StripDriveAndExtension(m_Record.xrefModel);
        } else if (isData && child.id == s_AnimBoundsChunk)
            m_Record.bounds = ReadAnimBounds(m_Chunky, m_Record.name);
    }

    Chunky& m_Chunky;
    const RenderModel* m_pModel;
    AnimRecord m_Record;
    bool m_Found = false;
};

} // namespace

void WriteAnim(Chunky& chunky, const RenderModel& model, const AnimListNode& node) {
    PayloadWriter writer;
    chunky.BeginFolder(s_AnimChunk, s_AnimVersion, node.GetAnim()->GetName());
    if (node.IsLocal())
        WriteData(chunky, model, *node.GetAnim().GetData());
    else
        WriteXRefAnim(chunky, writer, node, s_XRefAnimVersion);
    WriteAnimBounds(chunky, writer, node);
    chunky.EndChunk();
}

AnimRecord ReadAnimRecord(Chunky& chunky) { return RecordReader(chunky, nullptr).Read(); }

void AppendAnim(Chunky& chunky, RenderModel& model) { AppendAnimRecord(model, RecordReader(chunky, &model).Read()); }

} // namespace ra::generic
