#pragma once

#include <memory>

#include "Shared/Cross/RenderAnim/Chunks/ModelTreeWriter.h"

class ByteStream;
class RenderModel;

namespace ra {

using IntermediateParts = ModelParts;

// The intermediate form of a model, as the exporter writes it: bones and keys in the world. Parent bones stand ahead of
// their children.
//
// Writes the model under the alias path. False, with a line in the log, when that fails; what stood under the path is
// still there then, and nothing besides.
bool SaveIntermediate(const char* pPath, const RenderModel& model, bool exportMeshes, bool exportAnimKeys,
                      bool exportShaders);
// The same into a stream that the caller has opened. Throws what Chunky throws, and std::runtime_error when the stream
// doesn't take all.
void WriteIntermediate(ByteStream& stream, const RenderModel& model, const IntermediateParts& parts);

// A name without an alias lies under "DATA"; when it can't be opened as it stands, ".pvx" is tried. Null, with a line
// in the log, for a model that makes no sense; a file that is missing, damaged or newer throws Chunky::Exception or
// ByteStream::Exception. Meshes and shaders are entered in the inventory and made by the running device. Animations
// become relative to the bones' parents, as the generic form has them; the model can't be saved as intermediate then.
std::unique_ptr<RenderModel> LoadIntermediate(const char* pName);
// Appends the first animation of a file to the model's list; a file without one appends nothing. The bones are found by
// their names in the model's skeleton; one that isn't there is logged and left out. Throws as LoadIntermediate, and
// std::runtime_error for a model without a skeleton.
void AppendIntermediateAnims(RenderModel& model, const char* pPath);
// As LoadIntermediate, from a stream that the caller has opened.
std::unique_ptr<RenderModel> ReadIntermediate(ByteStream& stream);

} // namespace ra
