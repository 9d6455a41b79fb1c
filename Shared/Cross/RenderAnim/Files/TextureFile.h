#pragma once

#include <cstdint>
#include <memory>

#include "Shared/Cross/RenderAnim/TextureConvert.h"

// Textures in files of their own: pictures, and ".rtx", which holds the texture's chunk alone. Names are alias paths.

namespace ra {

// Null, with a line in the log, for a picture that can't be read and a chunk file that can't be opened; a damaged chunk
// file throws Chunky::Exception or ByteStream::Exception. A picture's texture has no name.
std::unique_ptr<Texture> TextureLoadGeneric(const char* pPath, const TextureOptions& options = {});
// The same with the chunk in its final form. The largest levels can be dropped.
std::unique_ptr<Texture> TextureLoadFinal(const char* pPath, uint32_t levelsToSkip = 0);

// A ".rtx" in the generic form, or a picture by the extension: DDS takes a compressed texture with all levels, TGA and
// JPG the first level of any other. `useDXTC` as for Texture2Image. False, with a line in the log.
bool SaveTexture(const char* pPath, const Texture& texture, uint32_t useDXTC = 0);

} // namespace ra
