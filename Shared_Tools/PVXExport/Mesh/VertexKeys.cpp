#include "Shared_Tools/PVXExport/Mesh/VertexKeys.h"

#include <algorithm>
#include <utility>

#include "Shared_Tools/PVXExport/Mesh/RadixSort.h"

namespace {

constexpr size_t s_SmallBucket = 24; // insertion sort is faster up to here

uint64_t RestOf(uint16_t shader, uint16_t weight, uint16_t texture, uint16_t normal) {
    return ByteOrderImage(uint64_t{shader} | uint64_t{weight} << 16 | uint64_t{texture} << 32 | uint64_t{normal} << 48);
}

VertexKey KeyOf(size_t vertex, uint64_t rest) {
    const uint64_t memory = ByteOrderImage(rest);
    return {static_cast<uint16_t>(vertex), static_cast<uint16_t>(memory), static_cast<uint16_t>(memory >> 16),
            static_cast<uint16_t>(memory >> 32), static_cast<uint16_t>(memory >> 48)};
}

} // namespace

void VertexKeys::Build(const MeshForm& form, const VertexRemaps& remaps) {
    Gather(form, remaps);
    m_Start.resize(m_Positions.size());
    if (!m_Others.empty())
        BucketOthers();
    for (size_t vertex = 0; vertex < m_Positions.size(); ++vertex)
        m_Start[vertex] = m_Positions[vertex].others ? SortBucket(vertex) : m_Positions[vertex].used;
    PlaceVertices();
    NumberVertices();
}

void VertexKeys::Gather(const MeshForm& form, const VertexRemaps& remaps) {
    const bool hasWeights = !remaps.weight.empty();
    const bool hasTexture = !form.cTexVertex.empty();
    const bool hasNormals = !form.cNormal.empty();
    m_Positions.assign(form.cVertex.size(), Position{});
    m_Others.clear();
    m_CornerEntry.resize(form.cFace.size() * 3);
    uint32_t* pCornerEntry = m_CornerEntry.data();
    for (const MeshFace& face : form.cFace)
        for (size_t c = 0; c < 3; ++c) {
            const auto vertex = static_cast<uint16_t>(remaps.vertex[face.v[c]]);
            const uint16_t weight = hasWeights ? static_cast<uint16_t>(remaps.weight[face.v[c]]) : uint16_t{0};
            const uint64_t rest = RestOf(face.iShader, weight, hasTexture ? face.t[c] : uint16_t{0},
                                         hasNormals ? face.n[c] : uint16_t{0});
            Position& position = m_Positions[vertex];
            if (!position.used)
                position = {rest, 0, true};
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
    m_BucketEnd.resize(m_Positions.size());
    uint32_t total = 0;
    for (size_t vertex = 0; vertex < m_Positions.size(); ++vertex) {
        m_BucketEnd[vertex] = total; // moves to the bucket's end while it is filled
        total += m_Positions[vertex].others ? m_Positions[vertex].others + 1 : 0;
    }
    m_Buckets.resize(total);
    for (size_t vertex = 0; vertex < m_Positions.size(); ++vertex)
        if (m_Positions[vertex].others)
            m_Buckets[m_BucketEnd[vertex]++] = {m_Positions[vertex].rest, static_cast<uint32_t>(vertex),
                                                static_cast<uint16_t>(vertex)};
    for (const Corner& other : m_Others)
        m_Buckets[m_BucketEnd[other.vertex]++] = other;
}

std::span<VertexKeys::Corner> VertexKeys::GetBucket(size_t vertex) {
    const size_t count = m_Positions[vertex].others + size_t{1};
    return std::span(m_Buckets).subspan(m_BucketEnd[vertex] - count, count);
}

// Returns the number of different keys.
uint32_t VertexKeys::SortBucket(size_t vertex) {
    const std::span<Corner> bucket = GetBucket(vertex);
    if (bucket.size() > s_SmallBucket) {
        std::ranges::sort(bucket, {}, &Corner::rest);
    } else {
        for (size_t i = 1; i < bucket.size(); ++i) {
            const Corner corner = bucket[i];
            size_t at = i;
            for (; at > 0 && corner.rest < bucket[at - 1].rest; --at)
                bucket[at] = bucket[at - 1];
            bucket[at] = corner;
        }
    }
    uint32_t count = 1;
    for (size_t i = 1; i < bucket.size(); ++i)
        count += bucket[i].rest != bucket[i - 1].rest ? 1 : 0;
    return count;
}

// The low byte of the position comes first in memory, so that the vertices go by positions in steps of 256. All else
// keeps to the positions' own order, in which they lie.
void VertexKeys::PlaceVertices() {
    uint32_t count = 0;
    for (size_t low = 0; low < std::min<size_t>(m_Start.size(), 256); ++low)
        for (size_t vertex = low; vertex < m_Start.size(); vertex += 256)
            count += std::exchange(m_Start[vertex], count);
    m_Vertices.resize(count);
}

void VertexKeys::NumberVertices() {
    m_NewIndex.resize(m_Positions.size() + m_Others.size());
    for (size_t vertex = 0; vertex < m_Positions.size(); ++vertex) {
        const Position& position = m_Positions[vertex];
        if (!position.used)
            continue;
        uint32_t place = m_Start[vertex];
        if (!position.others) {
            m_NewIndex[vertex] = place;
            m_Vertices[place] = KeyOf(vertex, position.rest);
            continue;
        }
        const std::span<const Corner> bucket = GetBucket(vertex);
        m_Vertices[place] = KeyOf(vertex, bucket.front().rest);
        for (size_t i = 0; i < bucket.size(); ++i) {
            if (i > 0 && bucket[i].rest != bucket[i - 1].rest)
                m_Vertices[++place] = KeyOf(vertex, bucket[i].rest);
            m_NewIndex[bucket[i].entry] = place;
        }
    }
}
