#pragma once

#include <cstdint>
#include <string>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/TextureType.h"

class TextureFiles;

constexpr uint32_t s_TextureVersion = 1; // of either form

// A texture of a file, without its pixels.
struct TextureContent {
    std::string name;
    bool isFinal = false; // in the form of the game's own files
    ImageType imageType = IMAGETYPE_RGBA32;
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t levelCount = 0;
    uint64_t size = 0; // bytes of pixels
    std::string file;  // the picture that was written; empty without
};

// The next chunk is a "TXTR", of either form. With `pFiles` its picture is written too, otherwise the pixels stay
// unread. Throws what the readers of its parts throw, and std::runtime_error for a picture that can't be written.
TextureContent ReadTextureContent(Chunky& chunky, TextureFiles* pFiles);
