#pragma once

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"

class AnimListNode;
class RenderModel;

namespace ra {

// What the forms of a motion file have of their own.
struct MotionFileForm {
    MotionForm form;
    void (*pWriteAnim)(Chunky& chunky, const RenderModel& model, const AnimListNode& node);
    void (*pAppendAnim)(Chunky& chunky, RenderModel& model);
};

// A whole motion file. Throws what Chunky throws.
void WriteMotionFile(Chunky& chunky, const RenderModel& model, const MotionFileForm& form);
// Into the model that the file lies beside. False, with a line in the log, when they make no sense together.
bool ReadMotionFile(Chunky& chunky, RenderModel& model, const MotionFileForm& form);

} // namespace ra
