#pragma once

#include <cstdint>
#include <memory>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"

class Texture;

namespace ra {

// A texture as it lies in the game's own files: with the renderer's type ahead, and level by level, so that the game
// can leave the largest ones where they are.

// Whether a side of the texture, which has a level, is shorter than a block's: compressed, it couldn't be read back.
bool IsTooSmallForDXTC(const Texture& texture);
// `useDXTC` 1, 3 or 5 compresses textures in colours but those that are too small; 0 leaves all as they are. Of a
// compressed texture the levels of less than 4 pixels a side aren't stored. False, with a line in the log, when a level
// couldn't be converted; it is not in the file then.
bool WriteFinalTexture(Chunky& chunky, PayloadWriter& writer, const Texture& texture, uint32_t useDXTC);
// The next chunk is such a "TXTR". The texture has its name and is nobody's yet. The largest levels can be dropped, as
// many as leave one. Throws Chunky::Exception for one that is damaged or has no level.
std::unique_ptr<Texture> TextureLoadFinal(Chunky& chunky, uint32_t levelsToSkip = 0);

} // namespace ra
