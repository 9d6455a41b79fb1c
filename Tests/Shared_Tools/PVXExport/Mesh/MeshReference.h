// The mesh steps in their plainest form, quadratic where that is plainest: what the fast ones are held against.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Shared_Tools/PVXExport/Mesh/MeshForm.h"
#include "Shared_Tools/PVXExport/Mesh/VertexKeys.h"

namespace reference {

template <class T>
std::string BytesOf(const std::vector<T>& array) {
    return array.empty() ? "" : std::string(reinterpret_cast<const char*>(array.data()), array.size() * sizeof(T));
}

template <class T>
void Unique(std::vector<T>& array, std::vector<uint32_t>& remap);

// The indices of the removed faces go to removed. False if a corner's normal has no direction; its face goes to failed.
bool BuildNormals(MeshForm& form, std::vector<int>& removed, int& failed);

struct Vertices {
    std::vector<VertexKey> keys;        // by vertex
    std::vector<uint32_t> cornerVertex; // by face * 3 + corner
};
Vertices BuildVertices(const MeshForm& form, const VertexRemaps& remaps);

} // namespace reference
