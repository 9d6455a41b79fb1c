#include "Shared/Cross/RenderAnim/Chunks/ParentField.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"

namespace ra {

void WriteParent(PayloadWriter& writer, const Skeleton& skeleton, int32_t index) {
    const int32_t parentIndex = skeleton.GetParentIndex(index);
    if (parentIndex != Bone::InvalidIndex)
        dbAssertText(static_cast<uint32_t>(parentIndex) < skeleton.GetBoneCount(),
                     "parentIndex < skeleton.GetBoneCount()");
    writer.Write(parentIndex);
}

int32_t ReadParent(PayloadReader& reader, int64_t index, int64_t count) {
    const auto parent = reader.Read<int32_t>("parent");
    if (parent < -1 || parent >= count || parent == index)
        reader.Fail("parent", std::to_string(parent) + " is no other bone");
    return parent;
}

} // namespace ra
