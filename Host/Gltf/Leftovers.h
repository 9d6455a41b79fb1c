#pragma once

#include <string>

namespace gltf {

// What this process calls a file while it writes it, so that no other export writes into it.
std::string GetUnfinishedName(const std::string& path);

// Takes away the files of such names that processes which have ended since left in the folder, which is in the
// system's form, with its final separator, and may not be there. What a living process is writing stays.
void RemoveLeftovers(const std::string& folder);

} // namespace gltf
