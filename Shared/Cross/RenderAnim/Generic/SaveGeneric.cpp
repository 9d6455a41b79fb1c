#include "Shared/Cross/RenderAnim/Chunks/ModelTreeWriter.h"
#include "Shared/Cross/RenderAnim/Chunks/SaveFile.h"
#include "Shared/Cross/RenderAnim/Generic/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/Generic/SkeletonChunk.h"

namespace ra {

void WriteGeneric(ByteStream& stream, const RenderModel& model) {
    static constexpr ModelForm s_Form = {.pWriteSkeleton = generic::WriteSkeleton, .pWriteAnim = generic::WriteAnim};
    WriteModelTree(stream, model, {}, s_Form);
}

bool SaveGeneric(const RenderModel& model, const char* pPath) {
    return SaveFile(pPath, [&](ByteStream& stream) { WriteGeneric(stream, model); });
}

} // namespace ra
