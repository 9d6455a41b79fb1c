#pragma once

#include "Shared/Cross/RenderAnim/ResourceRefs.h"

struct ExportScene;

namespace TextureLoad {

// The texture of a picture file, loaded once in an export and under the inventory's name for it, so that files that
// differ only in their extension are one. Empty when it can't be had; `warn` says whether the artist is told so.
//
// A picture outside of every project has no name and can be in no file: it is read, and one texture stands for all of
// them. The log says so.
TextureRef Load(ExportScene& scene, const char* pPath, bool warn);

} // namespace TextureLoad
