#pragma once

#include <memory>

class ByteStream;
class RenderModel;

namespace ra {

// What of a model goes into a file.
struct IntermediateParts {
    bool meshes = true;   // skeleton, mesh group, markers and cameras
    bool animKeys = true; // animations
    bool shaders = true;  // shaders and their textures; only together with the meshes
};

// The intermediate form of a model, as the exporter writes it. Parent bones stand ahead of their children.
//
// Opens the alias path for writing and writes the model. False, with a line in the log, when that fails; nothing is
// left under the path then.
bool SaveIntermediate(const char* pPath, const RenderModel& model, bool exportMeshes, bool exportAnimKeys,
                      bool exportShaders);
// The same into a stream that the caller has opened. Throws what Chunky throws, and std::runtime_error when the stream
// doesn't take all.
void WriteIntermediate(ByteStream& stream, const RenderModel& model, const IntermediateParts& parts);

// A name without an alias lies under "DATA"; when it can't be opened as it stands, ".pvx" is tried. Null, with a line
// in the log, for a model that makes no sense; a file that is missing, damaged or newer throws Chunky::Exception or
// ByteStream::Exception. Meshes and shaders are entered in the inventory and made by the running device.
std::unique_ptr<RenderModel> LoadIntermediate(const char* pName);
// The same from a stream that the caller has opened.
std::unique_ptr<RenderModel> ReadIntermediate(ByteStream& stream);

} // namespace ra
