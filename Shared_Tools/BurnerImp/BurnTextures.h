#pragma once

#include <span>
#include <string>

class Texture;

// Gives the textures all their levels, made from the first one where there is no other, or leaves them the first alone.
// One whose picture can't be reduced keeps what it has.
void SetMipMaps(std::span<const Texture* const> textures, bool mipMaps);

// What to tell of textures that could not be written: the first one that can't be compressed, and the remedy.
std::string ExplainUnconverted(std::span<const Texture* const> textures);
