#include "Shared/Cross/RenderAnim/Generic/MotionFile.h"

#include <stdexcept>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/SaveFile.h"
#include "Shared/Cross/RenderAnim/Generic/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionFileChunk.h"

namespace ra {

namespace {

constexpr MotionFileForm s_GenericMotion = {
    .form = MotionForm::Generic, .pWriteAnim = generic::WriteAnim, .pAppendAnim = generic::AppendAnim};

} // namespace

void WriteMotionFile(ByteStream& stream, const RenderModel& model) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    WriteMotionFile(chunky, model, s_GenericMotion);
    if (!stream.Flush())
        throw std::runtime_error("Unable to write to file!");
}

bool SaveMotionFile(const RenderModel& model, const char* pPath) {
    return SaveFile(pPath, [&](ByteStream& stream) { WriteMotionFile(stream, model); });
}

bool ReadMotionFile(ByteStream& stream, RenderModel& model) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    return ReadMotionFile(chunky, model, s_GenericMotion);
}

} // namespace ra
