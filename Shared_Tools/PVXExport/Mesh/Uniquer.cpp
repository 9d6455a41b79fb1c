#include "Shared_Tools/PVXExport/Mesh/Uniquer.h"

namespace {

template <class T>
RadixItem ItemOf(const T& element, size_t index) {
    static_assert(sizeof(T) == 8 || sizeof(T) == 12 || sizeof(T) == 16);
    std::array<uint64_t, 2> words{};
    std::memcpy(words.data(), &element, sizeof(T));
    return {ByteOrderImage(words[0]), ByteOrderImage(words[1]), static_cast<uint32_t>(index)};
}

template <class T>
T ElementOf(const RadixItem& item) {
    const std::array<uint64_t, 2> words{ByteOrderImage(item.high), ByteOrderImage(item.low)};
    T element;
    std::memcpy(static_cast<void*>(&element), words.data(), sizeof(T));
    return element;
}

} // namespace

template <class T>
void Uniquer::RunOn(std::vector<T>& array, std::vector<uint32_t>& remap) {
    m_Items.resize(array.size());
    for (size_t i = 0; i < array.size(); ++i)
        m_Items[i] = ItemOf(array[i], i);
    RadixSort(m_Items, m_Scratch);

    remap.resize(array.size());
    size_t count = 0;
    for (size_t i = 0; i < m_Items.size(); ++i) {
        if (i == 0 || !m_Items[i].SameKey(m_Items[i - 1]))
            array[count++] = ElementOf<T>(m_Items[i]);
        remap[m_Items[i].index] = static_cast<uint16_t>(count - 1);
    }
    array.resize(count);
}

void Uniquer::Run(std::vector<glm::vec3>& array, std::vector<uint32_t>& remap) { RunOn(array, remap); }
void Uniquer::Run(std::vector<glm::vec2>& array, std::vector<uint32_t>& remap) { RunOn(array, remap); }
void Uniquer::Run(std::vector<VertexWeight>& array, std::vector<uint32_t>& remap) { RunOn(array, remap); }
