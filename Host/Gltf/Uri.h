#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gltf {

// `%20` and its like become the bytes they stand for; a percent sign without two hexadecimal digits stays.
std::string DecodePercent(std::string_view text);

// The parts of a data URI, both borrowed from it.
struct DataUri {
    std::string_view mimeType; // may be empty
    std::string_view base64;
};

// Nothing when `uri` is no data URI in base64, the only form that glTF knows.
std::optional<DataUri> SplitDataUri(std::string_view uri);
bool IsDataUri(std::string_view uri);

// Nothing when `text` isn't base64. Padding may be missing.
std::optional<std::vector<std::byte>> DecodeBase64(std::string_view text);

// The path of the file that a relative URI names, inside `folder` (with its final separator, or empty). Nothing when
// the URI is empty, absolute or names a scheme: a scene brings its files along.
std::optional<std::string> ResolveFileUri(std::string_view folder, std::string_view uri);

} // namespace gltf
