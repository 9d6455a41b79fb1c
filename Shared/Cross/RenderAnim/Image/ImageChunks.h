#pragma once

#include <cstdint>
#include <memory>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Image/Image.h"
#include "Shared/Cross/Util/FourCC.h"

// Images in model files.

constexpr uint32_t s_ImageChunk = FourCC("IMAG");

// Whether ReadImage takes such an image: a compressed one has 4 pixels a side at least.
bool CanStoreImage(ImageType type, uint32_t width, uint32_t height);

// All levels, under the image's name.
void WriteImage(Chunky& chunky, const Image& image);

// The next "IMAG" of this level of the file. The largest levels can be dropped: as many as leave one, and a compressed
// image keeps 4 pixels a side. With the word "noimages" the chunk is skipped and the image is one grey pixel.
// Throws Chunky::Exception for anything that can't be such an image, before memory is taken for it.
std::unique_ptr<Image> ReadImage(Chunky& chunky, uint32_t levelsToSkip = 0);

// Of how many images of a texture levels can be made: of one, with the word "noimages", since all are the same then.
uint32_t LimitImages(uint32_t count);

// What an image in a model file is, without its pixels.
struct ImageAttributes {
    ImageType type = IMAGETYPE_RGBA32;
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t mipCount = 1;
};

// Of the next "IMAG", which is stepped over. Throws as ReadImage does.
ImageAttributes ReadImageAttributes(Chunky& chunky);
