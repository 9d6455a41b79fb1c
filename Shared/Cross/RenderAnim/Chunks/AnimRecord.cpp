#include "Shared/Cross/RenderAnim/Chunks/AnimRecord.h"

#include <utility>

#include "Shared/Cross/RenderAnim/AnimListNode.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"

// "XREF", data: an animation of another model
//   string  name of the model
//   string  name of the animation there
//
// "ANBV", data, version 1, name of the animation:
//   vec3    minimum
//   vec3    maximum

namespace ra {

namespace {

constexpr uint32_t s_AnimBoundsVersion = 1;

} // namespace

void WriteXRefAnim(Chunky& chunky, PayloadWriter& writer, const AnimListNode& node, uint32_t version) {
    writer.WriteString(node.GetXRefModel().GetText());
    writer.WriteString(node.GetAnim()->GetName());
    writer.WriteChunk(chunky, s_XRefAnimChunk, version);
}

uint32_t ReadXRefAnim(Chunky& chunky, AnimRecord& record, uint32_t version) {
    const ChunkInfo info = chunky.EnterData(s_XRefAnimChunk, version);
    PayloadReader reader(chunky, "animation", record.name.c_str());
    record.xrefModel = reader.ReadString("model name");
    record.xrefAnim = reader.ReadString("animation name");
    chunky.EndChunk();
    return info.version;
}

void WriteAnimBounds(Chunky& chunky, PayloadWriter& writer, const AnimListNode& node) {
    if (!node.HasBounds())
        return;
    writer.WriteVec3(node.GetMinimum());
    writer.WriteVec3(node.GetMaximum());
    writer.WriteChunk(chunky, s_AnimBoundsChunk, s_AnimBoundsVersion, node.GetAnim()->GetName());
}

AnimBounds ReadAnimBounds(Chunky& chunky, const std::string& animName) {
    EnterData(chunky, s_AnimBoundsChunk, s_AnimBoundsVersion, s_AnimBoundsVersion);
    PayloadReader reader(chunky, "animation", animName.c_str());
    AnimBounds bounds;
    bounds.minimum = reader.ReadVec3("minimum");
    bounds.maximum = reader.ReadVec3("maximum");
    chunky.EndChunk();
    return bounds;
}

void AppendAnimRecord(RenderModel& model, AnimRecord record) {
    std::unique_ptr<AnimListNode> pNode = record.pAnim
                                              ? MakeLocalNode(model, std::move(record.pAnim))
                                              : MakeXRefNode(model, record.xrefModel.c_str(), record.xrefAnim.c_str());
    if (!pNode)
        return;
    if (record.bounds)
        pNode->SetBounds(record.bounds->minimum, record.bounds->maximum);
    AddAnimNode(model, std::move(pNode), record.version);
}

} // namespace ra
