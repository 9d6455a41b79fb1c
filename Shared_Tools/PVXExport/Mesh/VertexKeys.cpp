#include "Shared_Tools/PVXExport/Mesh/VertexKeys.h"

#include <algorithm>

namespace {

// A position with more different corners than this is the hub of a large fan; then sorting all corners is faster.
constexpr int s_MaxChain = 48;

uint64_t RestOf(uint16_t shader, uint16_t weight, uint16_t texture, uint16_t normal) {
    return ByteOrderImage(uint64_t{shader} | uint64_t{weight} << 16 | uint64_t{texture} << 32 | uint64_t{normal} << 48);
}

uint64_t PositionImage(uint16_t vertex) { return uint64_t{__builtin_bswap16(vertex)} << 48; }

template <class Visit>
void ForEachCorner(const MeshForm& form, const VertexRemaps& remaps, Visit&& visit) {
    const bool hasWeights = !remaps.weight.empty();
    const bool hasTexture = !form.cTexVertex.empty();
    const bool hasNormals = !form.cNormal.empty();
    for (const MeshFace& face : form.cFace)
        for (size_t c = 0; c < 3; ++c) {
            const uint16_t weight = hasWeights ? static_cast<uint16_t>(remaps.weight[face.v[c]]) : uint16_t{0};
            visit(static_cast<uint16_t>(remaps.vertex[face.v[c]]),
                  RestOf(face.iShader, weight, hasTexture ? face.t[c] : uint16_t{0},
                         hasNormals ? face.n[c] : uint16_t{0}));
        }
}

} // namespace

void VertexKeys::Build(const MeshForm& form, const VertexRemaps& remaps) {
    m_Vertices.clear();
    m_CornerEntry.clear();
    m_CornerEntry.reserve(form.cFace.size() * 3);
    if (GatherByChains(form, remaps))
        NumberChains();
    else
        GatherBySorting(form, remaps);
}

bool VertexKeys::GatherByChains(const MeshForm& form, const VertexRemaps& remaps) {
    m_Entries.clear();
    m_FirstEntry.assign(form.cVertex.size(), s_End);
    bool shortChains = true;
    ForEachCorner(form, remaps, [&](uint16_t vertex, uint64_t rest) {
        if (!shortChains)
            return;
        const int32_t entry = FindOrAddEntry(vertex, rest);
        shortChains = entry != s_End;
        m_CornerEntry.push_back(static_cast<uint32_t>(entry));
    });
    return shortChains;
}

// s_End if the chain has become too long to be worth walking.
int32_t VertexKeys::FindOrAddEntry(uint16_t vertex, uint64_t rest) {
    int links = 0;
    for (int32_t i = m_FirstEntry[vertex]; i != s_End; i = m_Entries[static_cast<size_t>(i)].next, ++links)
        if (m_Entries[static_cast<size_t>(i)].rest == rest)
            return i;
    if (links == s_MaxChain)
        return s_End;
    m_Entries.push_back({rest, m_FirstEntry[vertex], vertex});
    return m_FirstEntry[vertex] = static_cast<int32_t>(m_Entries.size()) - 1;
}

// The low byte of the position comes first in memory, so the positions are gone through in steps of 256.
void VertexKeys::NumberChains() {
    m_NewIndex.resize(m_Entries.size());
    const size_t count = m_FirstEntry.size();
    for (size_t low = 0; low < std::min<size_t>(count, 256); ++low)
        for (size_t vertex = low; vertex < count; vertex += 256)
            NumberChain(m_FirstEntry[vertex]);
}

void VertexKeys::NumberChain(int32_t first) {
    const auto entryAt = [&](int32_t i) -> const Entry& { return m_Entries[static_cast<size_t>(i)]; };
    m_Chain.clear();
    for (int32_t i = first; i != s_End; i = entryAt(i).next)
        m_Chain.push_back(i);
    if (m_Chain.size() > 1)
        std::ranges::sort(m_Chain, {}, [&](int32_t i) { return entryAt(i).rest; });
    for (const int32_t i : m_Chain) {
        m_NewIndex[static_cast<size_t>(i)] = static_cast<uint32_t>(m_Vertices.size());
        AppendVertex(entryAt(i).vertex, entryAt(i).rest);
    }
}

void VertexKeys::GatherBySorting(const MeshForm& form, const VertexRemaps& remaps) {
    m_Items.clear();
    ForEachCorner(form, remaps, [&](uint16_t vertex, uint64_t rest) {
        m_Items.push_back({PositionImage(vertex) | rest >> 16, rest << 48, static_cast<uint32_t>(m_Items.size())});
    });
    RadixSort(m_Items, m_Scratch);

    m_CornerEntry.resize(m_Items.size());
    m_NewIndex.clear();
    for (size_t i = 0; i < m_Items.size(); ++i) {
        const RadixItem& item = m_Items[i];
        if (i == 0 || !item.SameKey(m_Items[i - 1])) {
            m_NewIndex.push_back(static_cast<uint32_t>(m_Vertices.size()));
            AppendVertex(__builtin_bswap16(static_cast<uint16_t>(item.high >> 48)), item.high << 16 | item.low >> 48);
        }
        m_CornerEntry[item.index] = static_cast<uint32_t>(m_Vertices.size() - 1);
    }
}

void VertexKeys::AppendVertex(uint16_t vertex, uint64_t rest) {
    const uint64_t memory = ByteOrderImage(rest);
    m_Vertices.push_back({vertex, static_cast<uint16_t>(memory), static_cast<uint16_t>(memory >> 16),
                          static_cast<uint16_t>(memory >> 32), static_cast<uint16_t>(memory >> 48)});
}
