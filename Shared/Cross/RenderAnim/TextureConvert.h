#pragma once

#include <cstdint>
#include <memory>

#include "Shared/Cross/Glaze/Texture.h"
#include "Shared/Cross/RenderAnim/Image/Image.h"

class Texture;

// Pictures into textures and back. Failures are null and a log line.

struct TextureOptions {
    // Levels down to the smallest are made for a picture that has but one, as far as its type and sides allow.
    bool makeMips = false;
    uint32_t maxSide = gz::Texture::MaxSide; // pixels; a larger picture is made smaller
};

// Takes the picture over.
std::unique_ptr<Texture> Image2Texture(std::unique_ptr<Image> pImage, const TextureOptions& options = {});

// A copy of one level. `useDXTC` 1, 3 and 5 compress a level in colours to DXT1, DXT3 and DXT5; 0 leaves it as it is,
// which other kinds of textures stay in any case.
std::unique_ptr<Image> Texture2Image(const Texture& texture, uint32_t level, uint32_t useDXTC = 0);
// All levels in one image.
std::unique_ptr<Image> Texture2Image(const Texture& texture);
