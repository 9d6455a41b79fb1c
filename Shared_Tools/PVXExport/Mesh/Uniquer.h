// Deduplication by exact bytes. Two floats that differ in their last bit stay two, and so do 0 and -0.
#pragma once

#include <cstdint>
#include <vector>

#include "Shared_Tools/PVXExport/Mesh/MeshForm.h"
#include "Shared_Tools/PVXExport/Mesh/RadixSort.h"

// Leaves one of each run of identical elements in the array, in ascending order of their bytes, and fills remap with
// the new index of each old one. The new index is counted in 16 bits: past 65536 different elements it starts over,
// which the callers' own limits catch. Keeps its working memory for the next array.
class Uniquer {
public:
    void Run(std::vector<glm::vec3>& array, std::vector<uint32_t>& remap);
    void Run(std::vector<glm::vec2>& array, std::vector<uint32_t>& remap);
    void Run(std::vector<VertexWeight>& array, std::vector<uint32_t>& remap);

private:
    template <class Item>
    struct Buffers {
        std::vector<Item> items;
        std::vector<Item> scratch;
    };
    template <class T, class Item>
    static void RunOn(std::vector<T>& array, std::vector<uint32_t>& remap, Buffers<Item>& buffers);

    Buffers<ShortRadixItem> m_Short; // for elements of up to 12 bytes
    Buffers<LongRadixItem> m_Long;
};
