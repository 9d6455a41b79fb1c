#pragma once

#include "Host/Gltf/Fault.h"

#include <cstddef>
#include <span>
#include <string>

namespace gltf {

enum class ImageKind { Other, Png, Jpeg };

// What the first bytes say. Three are enough.
ImageKind GetImageKind(std::span<const std::byte> bytes);

// Whether `path` is a file that was written after all of `sources`; empty ones of these don't count.
bool IsNewerThan(const std::string& path, std::span<const std::string> sources);

// Writes the file of an embedded image, or of one of a kind that the system doesn't know, into a folder that is made
// if need be: JPEG as it is, PNG as a TGA. The file appears as a whole or not at all, and takes the place of the one
// before; another process may be at the same. Faults, with `place`, when the image isn't one of these or is damaged,
// or when the file can't be written.
void UnpackImage(const Place& place, std::span<const std::byte> image, const std::string& path);

} // namespace gltf
