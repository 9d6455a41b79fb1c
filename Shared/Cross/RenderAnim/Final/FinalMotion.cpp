#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/SaveFile.h"
#include "Shared/Cross/RenderAnim/Final/FinalAnimChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalFile.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionFileChunk.h"

namespace ra {

namespace {

// Of another model's animation, which is all that comes here, the names alone are written.
void WriteNode(Chunky& chunky, const RenderModel&, const AnimListNode& node) {
    PayloadWriter writer;
    WriteFinalAnim(chunky, writer, node);
}

constexpr MotionFileForm s_FinalMotion = {
    .form = MotionForm::Final, .pWriteAnim = WriteNode, .pAppendAnim = AppendFinalAnim};

} // namespace

void SaveFinalMotion(const RenderModel& model, Chunky& chunky) { WriteMotionFile(chunky, model, s_FinalMotion); }

bool SaveFinalMotion(const RenderModel& model, const char* pPath) {
    return SaveFile(pPath, [&](ByteStream& stream) {
        Chunky chunky{ByteStreamAdapter(&stream)};
        SaveFinalMotion(model, chunky);
    });
}

bool ReadFinalMotion(ByteStream& stream, RenderModel& model) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    return ReadMotionFile(chunky, model, s_FinalMotion);
}

} // namespace ra
