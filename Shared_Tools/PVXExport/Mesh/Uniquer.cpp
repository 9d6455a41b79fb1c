#include "Shared_Tools/PVXExport/Mesh/Uniquer.h"

#include <cstring>

namespace {

template <class T, class Item>
Item ItemOf(const T& element, size_t index) {
    static_assert(sizeof(T) >= sizeof(uint64_t) && sizeof(T) <= sizeof(uint64_t) + sizeof(Item::low));
    Item item;
    std::memcpy(&item.high, &element, sizeof(uint64_t));
    std::memcpy(&item.low, reinterpret_cast<const char*>(&element) + sizeof(uint64_t), sizeof(T) - sizeof(uint64_t));
    item.high = ByteOrderImage(item.high);
    item.low = ByteOrderImage(item.low);
    item.index = static_cast<uint32_t>(index);
    return item;
}

template <class T, class Item>
void StoreElement(const Item& item, T& element) {
    const uint64_t high = ByteOrderImage(item.high);
    const auto low = ByteOrderImage(item.low);
    char* pElement = reinterpret_cast<char*>(&element);
    std::memcpy(pElement, &high, sizeof(uint64_t));
    std::memcpy(pElement + sizeof(uint64_t), &low, sizeof(T) - sizeof(uint64_t));
}

} // namespace

template <class T, class Item>
void Uniquer::RunOn(std::vector<T>& array, std::vector<uint32_t>& remap, Buffers<Item>& buffers) {
    auto& [items, scratch] = buffers;
    items.resize(array.size());
    for (size_t i = 0; i < array.size(); ++i)
        items[i] = ItemOf<T, Item>(array[i], i);
    RadixSort(std::span(items), scratch);

    remap.resize(array.size());
    size_t count = 0;
    for (size_t i = 0; i < items.size(); ++i) {
        if (i == 0 || !items[i].SameKey(items[i - 1]))
            StoreElement(items[i], array[count++]);
        remap[items[i].index] = static_cast<uint16_t>(count - 1);
    }
    array.resize(count);
}

void Uniquer::Run(std::vector<glm::vec3>& array, std::vector<uint32_t>& remap) { RunOn(array, remap, m_Short); }
void Uniquer::Run(std::vector<glm::vec2>& array, std::vector<uint32_t>& remap) { RunOn(array, remap, m_Short); }
void Uniquer::Run(std::vector<VertexWeight>& array, std::vector<uint32_t>& remap) { RunOn(array, remap, m_Long); }
