#include "Shared_Tools/PVXExport/Mesh/VertexKeys.h"

#include <algorithm>
#include <numeric>

#include "Shared_Tools/PVXExport/Mesh/RadixSort.h"

namespace {

constexpr size_t s_SmallBucket = 16; // counting is faster than sorting up to here

uint64_t RestOf(uint16_t shader, uint16_t weight, uint16_t texture, uint16_t normal) {
    return ByteOrderImage(uint64_t{shader} | uint64_t{weight} << 16 | uint64_t{texture} << 32 | uint64_t{normal} << 48);
}

VertexKey KeyOf(size_t vertex, uint64_t rest) {
    const uint64_t memory = ByteOrderImage(rest);
    return {static_cast<uint16_t>(vertex), static_cast<uint16_t>(memory), static_cast<uint16_t>(memory >> 16),
            static_cast<uint16_t>(memory >> 32), static_cast<uint16_t>(memory >> 48)};
}

// Calls back with each position in the order of their numbers' bytes: the low byte comes first in memory, so they go in
// steps of 256.
template <typename Callback>
void ForEachInOrder(size_t count, Callback callback) {
    for (size_t low = 0; low < std::min<size_t>(count, 256); ++low)
        for (size_t vertex = low; vertex < count; vertex += 256)
            callback(vertex);
}

// What it held before stays, since all that counts is going to be written over.
template <typename T>
void GrowTo(std::vector<T>& list, size_t size) {
    if (list.size() < size)
        list.resize(size);
}

} // namespace

void VertexKeys::Build(const MeshForm& form, const VertexRemaps& remaps) {
    Gather(form, remaps);
    if (!m_Others.empty())
        BucketOthers();
    NumberVertices();
}

void VertexKeys::Gather(const MeshForm& form, const VertexRemaps& remaps) {
    const bool hasWeights = !remaps.weight.empty();
    const bool hasTexture = !form.cTexVertex.empty();
    const bool hasNormals = !form.cNormal.empty();
    m_Positions.assign(form.cVertex.size(), Position{});
    m_Others.clear();
    GrowTo(m_CornerEntry, form.cFace.size() * 3);
    uint32_t* pCornerEntry = m_CornerEntry.data();
    for (const MeshFace& face : form.cFace)
        for (size_t c = 0; c < 3; ++c) {
            const auto vertex = static_cast<uint16_t>(remaps.vertex[face.v[c]]);
            const uint16_t weight = hasWeights ? static_cast<uint16_t>(remaps.weight[face.v[c]]) : uint16_t{0};
            const uint64_t rest = RestOf(face.iShader, weight, hasTexture ? face.t[c] : uint16_t{0},
                                         hasNormals ? face.n[c] : uint16_t{0});
            Position& position = m_Positions[vertex];
            if (!position.used)
                position = {rest, 0, 0, true};
            uint32_t entry = vertex;
            if (position.rest != rest) {
                ++position.others;
                entry = static_cast<uint32_t>(m_Positions.size() + m_Others.size());
                m_Others.push_back({rest, entry, vertex});
            }
            *pCornerEntry++ = entry;
        }
}

void VertexKeys::BucketOthers() {
    GrowTo(m_Buckets, m_Positions.size() + m_Others.size());
    uint32_t total = 0;
    ForEachInOrder(m_Positions.size(), [&](size_t vertex) {
        Position& position = m_Positions[vertex];
        if (!position.others)
            return;
        m_Buckets[total] = {position.rest, static_cast<uint32_t>(vertex), static_cast<uint16_t>(vertex)};
        position.bucketEnd = total + 1; // moves to the bucket's end while it is filled
        total += position.others + 1;
    });
    for (const Corner& other : m_Others)
        m_Buckets[m_Positions[other.vertex].bucketEnd++] = other;
}

void VertexKeys::NumberVertices() {
    m_Count = 0;
    GrowTo(m_NewIndex, m_Positions.size() + m_Others.size());
    GrowTo(m_Vertices, m_Positions.size() + m_Others.size());
    ForEachInOrder(m_Positions.size(), [&](size_t vertex) {
        const Position& position = m_Positions[vertex];
        if (position.others)
            NumberCorners(vertex,
                          std::span(m_Buckets).subspan(position.bucketEnd - position.others - 1, position.others + 1));
        else if (position.used)
            m_NewIndex[vertex] = AddVertex(vertex, position.rest);
    });
}

void VertexKeys::NumberCorners(size_t vertex, std::span<Corner> bucket) {
    uint64_t rest = 0;
    uint32_t newIndex = 0;
    bool isFirst = true;
    for (const uint32_t place : SortBucket(bucket)) {
        const Corner& corner = bucket[place];
        if (isFirst || corner.rest != rest) {
            rest = corner.rest;
            newIndex = AddVertex(vertex, rest);
            isFirst = false;
        }
        m_NewIndex[corner.entry] = newIndex;
    }
}

// The places of the bucket's corners in ascending order; good until the next call.
std::span<const uint32_t> VertexKeys::SortBucket(std::span<const Corner> bucket) {
    m_Order.resize(bucket.size());
    if (bucket.size() > s_SmallBucket) {
        std::iota(m_Order.begin(), m_Order.end(), 0u);
        std::ranges::sort(m_Order, {}, [&](uint32_t place) { return bucket[place].rest; });
        return m_Order;
    }
    // Each corner counts those before it: more comparisons than a sort's, but none that the processor has to guess.
    for (size_t i = 0; i < bucket.size(); ++i) {
        const uint64_t rest = bucket[i].rest;
        size_t place = 0;
        for (size_t k = 0; k < i; ++k)
            place += bucket[k].rest <= rest ? 1 : 0;
        for (size_t k = i + 1; k < bucket.size(); ++k)
            place += bucket[k].rest < rest ? 1 : 0;
        m_Order[place] = static_cast<uint32_t>(i);
    }
    return m_Order;
}

uint32_t VertexKeys::AddVertex(size_t vertex, uint64_t rest) {
    m_Vertices[m_Count] = KeyOf(vertex, rest);
    return m_Count++;
}
