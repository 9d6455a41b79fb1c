#pragma once

#include <cstdint>
#include <memory>

class ByteStream;
class Chunky;
class RenderModel;

namespace ra {

// The final form of a model, ".obm", which the burner writes and the game loads, and its motion side beside it, ".obe".

// `useDXTC` as for WriteFinalTexture. False, with a line in the log, for a texture level that couldn't be converted; it
// is not in the file then. Animations of other models are left out; they belong to the motion file. Throws what Chunky
// throws, and std::runtime_error when the stream doesn't take all; whoever opened it asks its Flush at the end.
bool SaveFinal(const RenderModel& model, Chunky& chunky, uint32_t useDXTC = 0);
void SaveFinalMotion(const RenderModel& model, Chunky& chunky);
// The same under an alias path. False, with a line in the log, when it fails; what stood under the path is still there
// then. A model that lacks a texture level is saved all the same.
bool SaveFinal(const RenderModel& model, const char* pPath, uint32_t useDXTC = 0);
bool SaveFinalMotion(const RenderModel& model, const char* pPath);

// A name without an alias lies under "DATA"; the extension becomes ".obm", and ".obe" for the motion file, which need
// not be there. Null, with a line in the log, for a model that makes no sense and for files that are missing, damaged
// or newer; of these the error sink is told, too. Meshes, textures and shaders are entered in the inventory and made by
// the running device.
std::unique_ptr<RenderModel> LoadFinal(const char* pName);
// The same from streams that the caller has opened: the model alone, and a motion file into its model, which is of no
// use when that fails. Null and false, with a line in the log, for what makes no sense; damage throws Chunky::Exception
// or ByteStream::Exception.
std::unique_ptr<RenderModel> ReadFinal(ByteStream& stream);
bool ReadFinalMotion(ByteStream& stream, RenderModel& model);

// Is told why a model couldn't be loaded. Null, as at first, for nobody.
using ErrorSink = void (*)(const char* pText);
void SetErrorSink(ErrorSink pSink);

// Has models that are asked for by name loaded by LoadFinal while the tools load switch is off.
void InstallFinalModelLoader();

} // namespace ra
