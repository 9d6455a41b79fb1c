#pragma once

#include <cstdint>
#include <memory>

#include "Shared/Cross/RenderAnim/Image/Image.h"

// Picture files by alias path; a name without an alias is one of "DATA:". Read: .dds, .jpg, .tga, .bmp, .bw; written:
// .tga, .jpg, .dds. All failures are one log line and null or false.
namespace ImageLoad {

// What is known of a picture that was read.
enum Flags : uint32_t {
    Flags_NoAlpha = 0,
    Flags_Alpha = 1,
    Flags_Luminance = 3,
    Flags_Unknown = 8, // converted, or none at all
};

// The picture in the wanted type, or in the file's own with IMAGETYPE_KEEP. A name without an extension is that of the
// first file there is, in the order of the list above. Of a DDS the largest levels can be dropped, as far as the rest
// has 4 pixels a side. With the word "noimages" every picture is one grey pixel.
std::unique_ptr<Image> Load(uint32_t& outFlags, const char* pName, ImageType wantedType = IMAGETYPE_KEEP,
                            uint32_t levelsToSkip = 0);

// By the extension: TGA takes RGBA32 and RGB888, JPG these by way of RGB888, DDS the compressed types with all their
// levels; of the others the first level is written. Only a whole file takes the name.
bool Save(const char* pName, const Image& image);

// The one grey pixel.
std::unique_ptr<Image> MakePlaceholder();

} // namespace ImageLoad
