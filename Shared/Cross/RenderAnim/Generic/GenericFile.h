#pragma once

#include <memory>

class ByteStream;
class RenderModel;

namespace ra {

// The generic form of a model, which the merge writes and the tools read: bones and keys relative to their parents.

// Writes the model under the alias path. Animations of other models are left out; they belong to the motion file.
// False, with a line in the log, when that fails; what stood under the path is still there then, and nothing besides.
bool SaveGeneric(const RenderModel& model, const char* pPath);
// The same into a stream that the caller has opened. Throws what Chunky throws, and std::runtime_error when the stream
// doesn't take all.
void WriteGeneric(ByteStream& stream, const RenderModel& model);

// A name without an alias lies under "GENERIC", one with an alias takes the extension ".pvx"; when that can't be
// opened, the same place under "DATA" is tried. With the motion file, the ".ebp" beside it is read too, where there is
// one. Null, with a line in the log, for a model that makes no sense; a file that is missing, damaged or newer throws
// Chunky::Exception or ByteStream::Exception. Meshes and shaders are entered in the inventory and made by the running
// device.
std::unique_ptr<RenderModel> LoadGeneric(const char* pName, bool withMotionFile);
// As LoadGeneric, from a stream that the caller has opened and without a motion file.
std::unique_ptr<RenderModel> ReadGeneric(ByteStream& stream);

// Has models that are asked for by name loaded by LoadGeneric while the tools load switch is on: for programs that read
// models of others. A file that can't be read is logged, and the model that stands in for missing ones takes its place.
void InstallGenericModelLoader();

} // namespace ra
