#pragma once

#include <functional>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Motion/MotionParts.h"

// The run of folders that a model's motion side is made of, the same in ".ebp" and ".obe". Its readers throw
// Chunky::Exception and ByteStream::Exception for damage. A reference to what isn't there is logged and left out.

class RenderModel;

namespace ra {

// The top of either file.
constexpr uint32_t s_MotionFileChunk = FourCC("QEBP");
constexpr uint32_t s_MotionFileVersion = 4;

// The level of data. The two differ in how the action tree's folder is called.
enum class MotionForm { Generic, Final };

// What the motion side has to know of the model that it is read into.
struct MotionContext {
    const char* pModelName = ""; // for messages
    MotionForm form = MotionForm::Generic;
    std::function<bool(const Name&)> hasAnimation; // every one is missing without it
    bool checksReferences = true;                  // otherwise all stay, for those who only look at the file
};

MotionContext MakeMotionContext(const RenderModel& model, MotionForm form);

// All six folders, in the order in which a reader wants them.
void WriteMotionParts(Chunky& chunky, PayloadWriter& writer, const ConstMotionParts& parts, MotionForm form);

// For one that walks the children of a file: reads the next chunk, which `child` describes, when it is one of the six
// folders. False, with nothing read, for any other.
bool ReadMotionPart(Chunky& chunky, const ChunkInfo& child, const MotionParts& parts, const MotionContext& context);

} // namespace ra
