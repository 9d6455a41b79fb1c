#pragma once

#include "Shared/Cross/RenderAnim/ResourceRefs.h"

namespace TextureLoad {

// The texture of an image file, by the inventory's name for it, so that a picture is loaded once. Empty when it can't
// be had; `warn` says whether the artist is told why.
//
// Pictures aren't read yet: the answer is always empty, and nobody is told. The channel's other settings don't depend
// on it.
TextureRef Load(const char* pPath, bool warn);

} // namespace TextureLoad
