#include "Shared_Tools/PVXExport/Mesh/VertexKeys.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

// A position with more different corners than this is the hub of a large fan; then sorting all corners is faster.
constexpr int s_MaxChain = 48;

uint64_t RestOf(uint16_t shader, uint16_t weight, uint16_t texture, uint16_t normal) {
    return ByteOrderImage(uint64_t{shader} | uint64_t{weight} << 16 | uint64_t{texture} << 32 | uint64_t{normal} << 48);
}

uint64_t PositionImage(uint16_t vertex) { return uint64_t{ByteOrderImage(vertex)} << 48; }

// In the order of the faces, as long as the visitor says so. True if it never said no.
template <class Visit>
bool ForEachCorner(const MeshForm& form, const VertexRemaps& remaps, Visit&& visit) {
    const bool hasWeights = !remaps.weight.empty();
    const bool hasTexture = !form.cTexVertex.empty();
    const bool hasNormals = !form.cNormal.empty();
    for (const MeshFace& face : form.cFace)
        for (size_t c = 0; c < 3; ++c) {
            const uint16_t weight = hasWeights ? static_cast<uint16_t>(remaps.weight[face.v[c]]) : uint16_t{0};
            const uint64_t rest = RestOf(face.iShader, weight, hasTexture ? face.t[c] : uint16_t{0},
                                         hasNormals ? face.n[c] : uint16_t{0});
            if (!visit(static_cast<uint16_t>(remaps.vertex[face.v[c]]), rest))
                return false;
        }
    return true;
}

} // namespace

void VertexKeys::Build(const MeshForm& form, const VertexRemaps& remaps) {
    m_Vertices.clear();
    m_CornerEntry.resize(form.cFace.size() * 3);
    if (GatherByChains(form, remaps))
        NumberChains(form.cVertex.size());
    else
        GatherBySorting(form, remaps);
}

bool VertexKeys::GatherByChains(const MeshForm& form, const VertexRemaps& remaps) {
    m_Entries.assign(form.cVertex.size(), Entry{});
    uint32_t* pCornerEntry = m_CornerEntry.data();
    return ForEachCorner(form, remaps, [&](uint16_t vertex, uint64_t rest) {
        Entry& first = m_Entries[vertex];
        if (first.next == s_Unused)
            first = {rest, s_End};
        const int32_t entry = first.rest == rest ? int32_t{vertex} : FindOrAddLink(vertex, rest);
        *pCornerEntry++ = static_cast<uint32_t>(entry);
        return entry != s_End;
    });
}

// s_End if the chain has become too long to be worth walking.
int32_t VertexKeys::FindOrAddLink(uint16_t vertex, uint64_t rest) {
    auto last = static_cast<size_t>(vertex);
    for (int links = 0; links < s_MaxChain; ++links) {
        const int32_t next = m_Entries[last].next;
        if (next == s_End) {
            const auto added = static_cast<int32_t>(m_Entries.size());
            m_Entries[last].next = added;
            m_Entries.push_back({rest, s_End});
            return added;
        }
        last = static_cast<size_t>(next);
        if (m_Entries[last].rest == rest)
            return next;
    }
    return s_End;
}

// The low byte of the position comes first in memory, so the positions are gone through in steps of 256.
void VertexKeys::NumberChains(size_t positions) {
    m_NewIndex.resize(m_Entries.size());
    m_Vertices.reserve(m_Entries.size());
    for (size_t low = 0; low < std::min<size_t>(positions, 256); ++low)
        for (size_t vertex = low; vertex < positions; vertex += 256)
            if (m_Entries[vertex].next != s_Unused)
                NumberChain(static_cast<uint16_t>(vertex));
}

void VertexKeys::NumberChain(uint16_t vertex) {
    // By insertion: most chains have one or two links, and none more than s_MaxChain and its first.
    std::array<std::pair<uint64_t, uint32_t>, s_MaxChain + 1> links;
    size_t count = 0;
    for (int32_t i = vertex; i != s_End; i = m_Entries[static_cast<size_t>(i)].next) {
        const uint64_t rest = m_Entries[static_cast<size_t>(i)].rest;
        size_t at = count++;
        for (; at > 0 && rest < links[at - 1].first; --at)
            links[at] = links[at - 1];
        links[at] = {rest, static_cast<uint32_t>(i)};
    }
    for (const auto& [rest, entry] : std::span(links).first(count)) {
        m_NewIndex[entry] = static_cast<uint32_t>(m_Vertices.size());
        AppendVertex(vertex, rest);
    }
}

void VertexKeys::GatherBySorting(const MeshForm& form, const VertexRemaps& remaps) {
    m_Items.clear();
    ForEachCorner(form, remaps, [&](uint16_t vertex, uint64_t rest) {
        m_Items.push_back({PositionImage(vertex) | rest >> 16, static_cast<uint32_t>(rest & 0xffff),
                           static_cast<uint32_t>(m_Items.size())});
        return true;
    });
    RadixSort(std::span(m_Items), m_Scratch);

    m_NewIndex.clear();
    for (size_t i = 0; i < m_Items.size(); ++i) {
        const ShortRadixItem& item = m_Items[i];
        if (i == 0 || !item.SameKey(m_Items[i - 1])) {
            m_NewIndex.push_back(static_cast<uint32_t>(m_Vertices.size()));
            AppendVertex(ByteOrderImage(static_cast<uint16_t>(item.high >> 48)), item.high << 16 | item.low);
        }
        m_CornerEntry[item.index] = static_cast<uint32_t>(m_Vertices.size() - 1);
    }
}

void VertexKeys::AppendVertex(uint16_t vertex, uint64_t rest) {
    const uint64_t memory = ByteOrderImage(rest);
    m_Vertices.push_back({vertex, static_cast<uint16_t>(memory), static_cast<uint16_t>(memory >> 16),
                          static_cast<uint16_t>(memory >> 32), static_cast<uint16_t>(memory >> 48)});
}
