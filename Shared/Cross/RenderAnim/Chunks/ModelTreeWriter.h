#pragma once

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

class AnimListNode;
class ByteStream;
class RenderModel;
class Skeleton;

namespace ra {

// What of a model goes into a file.
struct ModelParts {
    bool meshes = true;   // skeleton, mesh group, markers and cameras
    bool animKeys = true; // animations
    bool shaders = true;  // shaders and their textures; only together with the meshes
};

// What a form writes in its own way.
struct ModelForm {
    void (*pWriteSkeleton)(Chunky& chunky, PayloadWriter& writer, const Skeleton& skeleton);
    void (*pWriteAnim)(Chunky& chunky, const RenderModel& model, const AnimListNode& node);
};

// A whole file of the intermediate or the generic form. Animations of other models are left out. Throws what Chunky
// throws, and std::runtime_error when the stream doesn't take all.
void WriteModelTree(ByteStream& stream, const RenderModel& model, const ModelParts& parts, const ModelForm& form);

} // namespace ra
