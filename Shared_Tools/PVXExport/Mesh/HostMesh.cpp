#include "Shared_Tools/PVXExport/Mesh/HostMesh.h"

#include <algorithm>
#include <climits>

#include "Shared/Cross/Debug/db.h"

namespace {

constexpr CornerOrder s_Kept = {0, 1, 2};
constexpr CornerOrder s_Reversed = {2, 1, 0};

constexpr size_t s_IndexCount = size_t{USHRT_MAX} + 1;

glm::vec2 Transform(float u, float v, const glm::mat4& m) {
    return {u * m[0].x + v * m[1].x + 0.0f * m[2].x + m[3].x, u * m[0].y + v * m[1].y + 0.0f * m[2].y + m[3].y};
}

uint32_t HighestTextureVertex(const Mesh& mesh) {
    uint32_t highest = 0;
    for (const TVFace& face : mesh.tvFace)
        highest = std::max({highest, face.t[0], face.t[1], face.t[2]});
    return highest;
}

} // namespace

namespace HostMesh {

CornerOrder GetCornerOrder(const Matrix3& tm) {
    const float parity = DotProd(CrossProd(GetRow(tm, 0), GetRow(tm, 1)), GetRow(tm, 2));
    return parity < 0.0f ? s_Kept : s_Reversed;
}

void ReadPositions(const Mesh& mesh, const Matrix3& tm, MeshForm& form) {
    form.cVertex.resize(static_cast<size_t>(mesh.numVerts));
    for (size_t i = 0; i < form.cVertex.size(); ++i) {
        const Point3 p = TransformPoint(mesh.verts[i], tm);
        form.cVertex[i] = {-p.x, p.z, -p.y};
    }
}

bool ReadFaces(const Mesh& mesh, const CornerOrder& order, std::vector<uint8_t>& usedSlots, MeshForm& form) {
    uint32_t highest = 0;
    const size_t lastSlot = usedSlots.size() - 1;
    form.cFace.resize(static_cast<size_t>(mesh.numFaces));
    for (size_t i = 0; i < form.cFace.size(); ++i) {
        const Face& source = mesh.faces[i];
        MeshFace& face = form.cFace[i];
        for (size_t c = 0; c < 3; ++c) {
            const uint32_t v = source.v[order[c]];
            highest = std::max(highest, v);
            face.v[c] = face.n[c] = static_cast<uint16_t>(v);
            face.t[c] = 0;
        }
        const size_t slot = std::min<size_t>(source.getMatID(), lastSlot);
        face.iShader = static_cast<uint16_t>(slot);
        face.smGroup = source.getSmGroup();
        usedSlots[slot] = 1;
    }
    const bool inRange = highest < static_cast<uint32_t>(mesh.numVerts);
    dbAssertText(inRange, "face.v < mesh.numVerts");
    return inRange;
}

std::array<glm::vec2, 3> GetFaceMapping(const Face& face) {
    constexpr std::array<size_t, 3> next = {1, 2, 0};
    constexpr std::array<size_t, 3> previous = {2, 0, 1};
    static constexpr std::array<std::array<glm::vec2, 3>, 2> s_Halves = {
        {{{{0, 0}, {1, 0}, {1, 1}}}, {{{1, 1}, {0, 1}, {0, 0}}}}};

    const size_t hidden = !(face.flags & Face::EdgeA) ? 0 : !(face.flags & Face::EdgeB) ? 1 : 2;
    // The two faces of a quad see their common edge from either end, which tells them apart.
    const auto& half = s_Halves[face.v[previous[hidden]] < face.v[hidden] ? 0 : 1];
    std::array<glm::vec2, 3> corners;
    size_t i = 2 - hidden;
    for (glm::vec2& corner : corners) {
        corner = half[i];
        i = next[i];
    }
    return corners;
}

} // namespace HostMesh

bool TexCoordReader::Read(const Mesh& mesh, const CornerOrder& order, std::span<const SlotMapping> mappings,
                          std::span<const uint8_t> usedSlots, MeshForm& form) {
    form.cTexVertex.clear();
    if (mesh.numTVerts <= 0)
        return true;
    const bool inRange =
        mesh.tvFace.size() >= form.cFace.size() && HighestTextureVertex(mesh) < static_cast<uint32_t>(mesh.numTVerts);
    dbAssertText(inRange, "tvFace.t < mesh.numTVerts");
    if (!inRange)
        return false;

    const size_t first = static_cast<size_t>(std::ranges::find(usedSlots, uint8_t{1}) - usedSlots.begin());
    bool alike = !mappings[first].faceMapped;
    for (size_t slot = first + 1; slot < mappings.size() && alike; ++slot)
        alike = !usedSlots[slot] || mappings[slot] == mappings[first];
    if (alike && form.cFace.size() * 3 <= s_IndexCount)
        ReadByTextureVertex(mesh, order, mappings[first].matrix, form);
    else
        ReadByCorner(mesh, order, mappings, form);
    return true;
}

// What the corners come to is the same for all that use a texture vertex.
void TexCoordReader::ReadByTextureVertex(const Mesh& mesh, const CornerOrder& order, const glm::mat4& matrix,
                                         MeshForm& form) {
    m_IndexOfVertex.assign(static_cast<size_t>(mesh.numTVerts), 0);
    for (size_t i = 0; i < form.cFace.size(); ++i)
        for (const uint32_t vertex : mesh.tvFace[i].t)
            m_IndexOfVertex[vertex] = 1;
    for (size_t vertex = 0; vertex < m_IndexOfVertex.size(); ++vertex)
        if (m_IndexOfVertex[vertex]) {
            m_IndexOfVertex[vertex] = static_cast<uint32_t>(form.cTexVertex.size());
            form.cTexVertex.push_back(Transform(mesh.tVerts[vertex].x, mesh.tVerts[vertex].y, matrix));
        }
    m_Uniquer.Run(form.cTexVertex, m_Remap);
    for (size_t i = 0; i < form.cFace.size(); ++i)
        for (size_t c = 0; c < 3; ++c)
            form.cFace[i].t[c] = static_cast<uint16_t>(m_Remap[m_IndexOfVertex[mesh.tvFace[i].t[order[c]]]]);
}

// One place for each corner. Their indices have 16 bits: past 21845 faces they start over, and what the last faces
// leave there counts for the first ones too.
void TexCoordReader::ReadByCorner(const Mesh& mesh, const CornerOrder& order, std::span<const SlotMapping> mappings,
                                  MeshForm& form) {
    form.cTexVertex.assign(form.cFace.size() * 3, glm::vec2(0.0f));
    for (size_t i = 0; i < form.cFace.size(); ++i) {
        MeshFace& face = form.cFace[i];
        const SlotMapping& mapping = mappings[face.iShader];
        std::array<glm::vec2, 3> corners;
        if (mapping.faceMapped)
            corners = HostMesh::GetFaceMapping(mesh.faces[i]);
        else
            for (size_t c = 0; c < 3; ++c)
                corners[c] = glm::vec2(mesh.tVerts[mesh.tvFace[i].t[c]]);
        for (size_t c = 0; c < 3; ++c) {
            const auto index = static_cast<uint16_t>(i * 3 + c);
            const glm::vec2 corner = corners[order[c]];
            form.cTexVertex[index] = Transform(corner.x, corner.y, mapping.matrix);
            face.t[c] = index;
        }
    }
    m_Uniquer.Run(form.cTexVertex, m_Remap);
    for (MeshFace& face : form.cFace)
        for (uint16_t& t : face.t)
            t = static_cast<uint16_t>(m_Remap[t]);
}
