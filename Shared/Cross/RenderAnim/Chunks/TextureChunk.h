#pragma once

#include <memory>
#include <span>
#include <vector>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/ResourceRefs.h"
#include "Shared/Cross/RenderAnim/TextureConvert.h"
#include "Shared/Cross/Util/FourCC.h"

namespace ra {

class MeshGroup;

constexpr uint32_t s_TextureChunk = FourCC("TXTR");

// A texture as it lies in intermediate and generic files.
void WriteTexture(Chunky& chunky, PayloadWriter& writer, const Texture& texture);
// The next chunk is such a "TXTR". The texture has its name and is nobody's yet. Throws Chunky::Exception for one that
// is damaged or has no picture.
std::unique_ptr<Texture> TextureLoadGeneric(Chunky& chunky, const TextureOptions& options = {});
// Enters it in the inventory.
TextureRef AddTexture(std::unique_ptr<Texture> pTexture);

// The textures that have to be in a file for these shaders: of all channels of those that lie there themselves, each
// texture once, in the order in which they are met. One without a name can't be named by a channel, and one without a
// picture has nothing to store.
std::vector<const Texture*> CollectTextures(std::span<const Shader* const> shaders);
// For the shaders that the group owns.
std::vector<const Texture*> CollectTextures(const MeshGroup& group);
void WriteTextures(Chunky& chunky, PayloadWriter& writer, const MeshGroup& group);

} // namespace ra
