#pragma once

#include <memory>

#include "Shared/Cross/FileSystem/Chunky.h"

class Anim;
class RenderModel;

namespace ra::generic {

// The streams of an animation: the next chunk is a "DATA" of an "ANIM". Its bones are the model's, by their indices; a
// stream of a camera that the model lacks is logged and left out. Without a model, all are as they stand in the file.
// The animation bears the name and is nobody's yet.
std::unique_ptr<Anim> ReadAnimData(Chunky& chunky, const RenderModel* pModel, const char* pName);

} // namespace ra::generic
