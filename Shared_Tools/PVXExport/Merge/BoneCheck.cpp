#include "Shared_Tools/PVXExport/Merge/BoneCheck.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimParts.h"
#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Intermediate/SkeletonChunk.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Transform.h"

namespace {

constexpr uint32_t s_StreamsVersion = 1;

// What rounding leaves behind is far below both, and what one sees is far above.
constexpr float s_RotationTolerance = 1e-3f; // of an axis of length 1
constexpr float s_PositionTolerance = 1e-3f; // of the model's extent

constexpr size_t s_LineLength = 200; // where a line of names is broken

// The streams' names alone; the keys are stepped over.
std::vector<std::string> ReadStreamNames(Chunky& chunky) {
    std::vector<std::string> names;
    chunky.EnterFolder(ra::s_AnimChunk, ra::intermediate::s_AnimVersion);
    chunky.EnterFolder(ra::s_AnimDataChunk, s_StreamsVersion);
    for (ChunkInfo child; chunky.NextChunk(child);)
        if (child.id == ra::s_BoneAnimChunk && child.kind == ChunkKind_Data)
            names.emplace_back(child.name.GetText());
    chunky.EndChunk();
    chunky.EndChunk();
    return names;
}

glm::mat4x3 GetLocal(const glm::mat4x3& world, const glm::mat4x3* pParentWorld) {
    return pParentWorld ? ra::Multiply(world, ra::Inverse(*pParentWorld)) : world;
}

void ReportNames(const std::string& fileName, const char* pWhat, const std::vector<std::string>& names) {
    for (size_t i = 0; i < names.size();) {
        std::string line = names[i++];
        while (i < names.size() && line.size() + names[i].size() < s_LineLength)
            line += ", " + names[i++];
        dbWarningf("MERGE -- '%s': %s: %s", fileName.c_str(), pWhat, line.c_str());
    }
}

} // namespace

struct BoneCheck::FileBones {
    bool hasAnim = false;
    std::vector<std::string> names;                     // of the animation
    std::vector<ra::intermediate::BoneRecord> skeleton; // empty without one
};

BoneCheck::BoneCheck(const Skeleton& skeleton) : m_Skeleton(skeleton) {
    float extent = 0.0f;
    for (int32_t i = 0; i < static_cast<int32_t>(skeleton.GetBoneCount()); ++i) {
        m_Indices.emplace(skeleton.GetBone(i).GetName(), i);
        extent = std::max(extent, glm::length(skeleton.GetBone(i).GetReferenceMatrix()[3]));
    }
    m_PositionTolerance = extent * s_PositionTolerance;
}

BoneDifferences BoneCheck::Compare(ByteStream& file) const {
    Chunky chunky{ByteStreamAdapter(&file)};
    chunky.EnterFolder(ra::s_ModelChunk, ra::s_ModelVersion);
    FileBones bones;
    for (ChunkInfo child; !bones.hasAnim && chunky.NextChunk(child);) {
        if (child.kind == ChunkKind_Data && child.id == ra::intermediate::s_SkeletonChunk) {
            bones.skeleton = ra::intermediate::ReadBoneRecords(chunky);
        } else if (child.kind == ChunkKind_Folder && child.id == ra::s_AnimChunk) {
            bones.names = ReadStreamNames(chunky);
            bones.hasAnim = true;
        }
    }
    BoneDifferences differences;
    if (bones.hasAnim) {
        CompareNames(bones.names, differences);
        CompareRest(bones, differences);
    }
    return differences;
}

void BoneCheck::CompareNames(const std::vector<std::string>& names, BoneDifferences& differences) const {
    std::unordered_set<int32_t> found;
    for (const std::string& name : names) {
        const auto bone = m_Indices.find(ra::Name(name.c_str()));
        if (bone == m_Indices.end())
            differences.missingInModel.push_back(name);
        else
            found.insert(bone->second);
    }
    for (int32_t i = 0; i < static_cast<int32_t>(m_Skeleton.GetBoneCount()); ++i)
        if (!found.contains(i))
            differences.missingInFile.emplace_back(m_Skeleton.GetBone(i).GetName().GetTextOrEmpty());
}

void BoneCheck::CompareRest(const FileBones& bones, BoneDifferences& differences) const {
    for (const ra::intermediate::BoneRecord& record : bones.skeleton) {
        const auto bone = m_Indices.find(ra::Name(record.name.c_str()));
        if (bone == m_Indices.end())
            continue;
        const auto* const pParent = record.parent >= 0 ? &bones.skeleton[static_cast<size_t>(record.parent)] : nullptr;
        const Bone* const pModelParent = m_Skeleton.GetBone(bone->second).GetParent();
        const std::string_view modelParent = pModelParent ? pModelParent->GetName().GetTextOrEmpty() : "";
        if (modelParent != (pParent ? std::string_view(pParent->name) : ""))
            differences.otherParent.push_back(record.name);
        else if (!IsSameRest(GetLocal(record.transform, pParent ? &pParent->transform : nullptr), bone->second))
            differences.otherRest.push_back(record.name);
    }
}

// Relative to the parent, so that a bone that lies elsewhere doesn't take all below it along.
bool BoneCheck::IsSameRest(const glm::mat4x3& fileLocal, int32_t bone) const {
    const Bone& modelBone = m_Skeleton.GetBone(bone);
    const Bone* const pParent = modelBone.GetParent();
    const glm::mat4x3 modelLocal =
        GetLocal(modelBone.GetReferenceMatrix(), pParent ? &pParent->GetReferenceMatrix() : nullptr);
    // Written so that what is no number differs.
    for (int axis = 0; axis < 3; ++axis)
        if (!(glm::distance(fileLocal[axis], modelLocal[axis]) <= s_RotationTolerance))
            return false;
    return glm::distance(fileLocal[3], modelLocal[3]) <= m_PositionTolerance;
}

void BoneCheck::Report(const std::string& fileName, const BoneDifferences& differences) {
    if (differences.IsEmpty())
        return;
    dbWarningf("MERGE -- '%s': bones: %zu of the model's missing in the animation, %zu of the animation's missing in "
               "the model, %zu with another parent, %zu with another rest pose",
               fileName.c_str(), differences.missingInFile.size(), differences.missingInModel.size(),
               differences.otherParent.size(), differences.otherRest.size());
    ReportNames(fileName, "missing in the animation", differences.missingInFile);
    ReportNames(fileName, "missing in the model", differences.missingInModel);
    ReportNames(fileName, "another parent", differences.otherParent);
    ReportNames(fileName, "another rest pose", differences.otherRest);
}
