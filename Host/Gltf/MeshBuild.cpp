#include "Host/Gltf/MeshBuild.h"

#include "Host/Gltf/PositionWeld.h"
#include "Host/Gltf/SmoothingGroups.h"
#include "Host/Sdk/Mesh.h"

#include <algorithm>
#include <numeric>

namespace gltf {

namespace {

using Part = WeldedVertices::Part;

// Beyond this many vertices for each corner a table over all vertices costs more than sorting the corners.
constexpr uint32_t s_SparseFactor = 4;

// Makes the corners, which name vertices of the file, name those of the run instead, of which only used ones are.
void NumberVertices(std::span<uint32_t> corners, Part& part) {
    const uint32_t total = part.pPrimitive->vertexCount;
    if (total / s_SparseFactor > corners.size()) {
        part.sources.assign(corners.begin(), corners.end());
        std::sort(part.sources.begin(), part.sources.end());
        part.sources.erase(std::unique(part.sources.begin(), part.sources.end()), part.sources.end());
        for (uint32_t& corner : corners) {
            const auto found = std::lower_bound(part.sources.begin(), part.sources.end(), corner);
            corner = part.firstVertex + static_cast<uint32_t>(found - part.sources.begin());
        }
        part.vertexCount = static_cast<uint32_t>(part.sources.size());
        return;
    }
    std::vector<uint8_t> used(total, 0);
    for (const uint32_t corner : corners)
        used[corner] = 1;
    part.vertexCount = static_cast<uint32_t>(std::accumulate(used.begin(), used.end(), size_t{0}));
    if (part.vertexCount == total) {
        if (part.firstVertex > 0)
            for (uint32_t& corner : corners)
                corner += part.firstVertex;
        return;
    }
    std::vector<uint32_t> numbers(total);
    part.sources.reserve(part.vertexCount);
    for (uint32_t vertex = 0; vertex < total; ++vertex) {
        numbers[vertex] = part.firstVertex + static_cast<uint32_t>(part.sources.size());
        if (used[vertex])
            part.sources.push_back(vertex);
    }
    for (uint32_t& corner : corners)
        corner = numbers[corner];
}

void GatherCorners(const MeshData& mesh, FaceRange range, WeldedVertices& out) {
    out.corners.reserve(size_t{range.count} * 3);
    uint32_t firstOfPrimitive = 0;
    for (const PrimitiveData& primitive : mesh.primitives) {
        const uint32_t begin = std::max(firstOfPrimitive, range.first);
        const uint32_t end = std::min(firstOfPrimitive + primitive.faceCount, range.first + range.count);
        if (begin < end) {
            Part part{.pPrimitive = &primitive,
                      .firstFace = begin - range.first,
                      .faceCount = end - begin,
                      .firstVertex = out.vertexCount};
            const size_t start = out.corners.size();
            AppendTriangles(primitive.mode, primitive.indices, begin - firstOfPrimitive, part.faceCount, out.corners);
            NumberVertices(std::span(out.corners).subspan(start), part);
            out.vertexCount += part.vertexCount;
            out.parts.push_back(std::move(part));
        }
        firstOfPrimitive += primitive.faceCount;
    }
}

// Reads an attribute of three floats of all of a part's vertices, `width` words apart.
void ReadVectors(const AccessorView& view, const Part& part, size_t width, uint32_t* pOut) {
    if (view.IsPlainFloat() && part.sources.empty()) {
        for (uint32_t i = 0; i < part.vertexCount; ++i, pOut += width)
            std::memcpy(pOut, view.GetElement(i), 3 * sizeof(float));
        return;
    }
    for (uint32_t i = 0; i < part.vertexCount; ++i, pOut += width) {
        float values[3];
        view.Read(part.GetSource(i), values, 3);
        std::memcpy(pOut, values, sizeof values);
    }
}

void AddMorph(const AccessorView& view, const Part& part, float weight, size_t width, uint32_t* pInOut) {
    if (view.IsEmpty() || weight == 0.0f)
        return;
    for (uint32_t i = 0; i < part.vertexCount; ++i, pInOut += width) {
        float base[3];
        float delta[3];
        std::memcpy(base, pInOut, sizeof base);
        view.Read(part.GetSource(i), delta, 3);
        for (int axis = 0; axis < 3; ++axis)
            base[axis] += weight * delta[axis];
        std::memcpy(pInOut, base, sizeof base);
    }
}

void ReadPositions(const Part& part, std::span<const float> morphWeights, size_t width, uint32_t* pOut) {
    ReadVectors(part.pPrimitive->positions, part, width, pOut);
    const std::vector<PrimitiveData::MorphTarget>& targets = part.pPrimitive->morphTargets;
    for (size_t i = 0; i < std::min(targets.size(), morphWeights.size()); ++i)
        AddMorph(targets[i].positions, part, morphWeights[i], width, pOut);
}

void ReadSkin(const Part& part, size_t width, uint32_t* pOut) {
    size_t set = 0;
    for (const PrimitiveData::SkinSet& skinSet : part.pPrimitive->skinSets) {
        uint32_t* pRow = pOut + 3 + WeldedVertices::WordsOfSkinSet * set++;
        for (uint32_t i = 0; i < part.vertexCount; ++i, pRow += width) {
            float weights[4];
            skinSet.weights.Read(part.GetSource(i), weights, 4);
            for (unsigned k = 0; k < 4; ++k)
                pRow[k] = skinSet.joints.ReadUnsigned(part.GetSource(i), k);
            std::memcpy(pRow + 4, weights, sizeof weights);
        }
    }
}

std::vector<glm::vec3> ReadNormals(const WeldedVertices& vertices, std::span<const float> morphWeights) {
    std::vector<glm::vec3> normals(vertices.vertexCount, glm::vec3(0.0f));
    std::vector<uint32_t> words;
    for (const Part& part : vertices.parts) {
        if (part.pPrimitive->normals.IsEmpty())
            continue;
        words.resize(size_t{part.vertexCount} * 3);
        ReadVectors(part.pPrimitive->normals, part, 3, words.data());
        const std::vector<PrimitiveData::MorphTarget>& targets = part.pPrimitive->morphTargets;
        for (size_t i = 0; i < std::min(targets.size(), morphWeights.size()); ++i)
            AddMorph(targets[i].normals, part, morphWeights[i], 3, words.data());
        std::memcpy(normals.data() + part.firstVertex, words.data(), words.size() * sizeof(uint32_t));
    }
    return normals;
}

// Whether all vertices of each position have one normal, so that nothing is hard.
bool IsSmooth(const WeldedVertices& vertices, std::span<const glm::vec3> normals) {
    for (uint32_t i = 0; i < vertices.vertexCount; ++i)
        if (!AreNormalsEqual(normals[vertices.firsts[vertices.positions[i]]], normals[i]))
            return false;
    return true;
}

void SetAllGroups(Mesh& mesh, uint32_t mask) {
    for (Face& face : mesh.faces)
        face.smGroup = mask;
}

void SetSmoothing(const MeshData& data, const MeshShape& shape, const WeldedVertices& vertices, Mesh& mesh) {
    if (shape.pSmoothing) {
        for (size_t i = 0; i < mesh.faces.size() && shape.range.first + i < shape.pSmoothing->size(); ++i)
            mesh.faces[i].smGroup = (*shape.pSmoothing)[shape.range.first + i];
        return;
    }
    if (!data.hasNormals)
        return;
    if (data.allNormals && !vertices.IsAnyWelded()) {
        // Only vertices that faces share hold the surface together, and all of it is smooth.
        SetAllGroups(mesh, vertices.vertexCount < vertices.corners.size() ? 1 : 0);
        return;
    }
    const std::vector<glm::vec3> normals = ReadNormals(vertices, shape.morphWeights);
    if (data.allNormals && IsSmooth(vertices, normals)) {
        SetAllGroups(mesh, 1);
        return;
    }
    const std::vector<uint32_t> masks =
        MakeSmoothingGroups({.corners = vertices.corners,
                             .positions = vertices.positions,
                             .positionCount = static_cast<uint32_t>(vertices.firsts.size()),
                             .normals = normals});
    for (size_t i = 0; i < mesh.faces.size(); ++i)
        mesh.faces[i].smGroup = masks[i];
}

void SetVertices(const WeldedVertices& vertices, Mesh& mesh) {
    mesh.setNumVerts(static_cast<int>(vertices.firsts.size()));
    for (size_t i = 0; i < vertices.firsts.size(); ++i) {
        float p[3];
        std::memcpy(p, vertices.words.data() + vertices.firsts[i] * vertices.width, sizeof p);
        mesh.verts[i] = {p[0], -p[2], p[1]};
    }
}

void SetFaces(const WeldedVertices& vertices, Mesh& mesh) {
    mesh.setNumFaces(static_cast<int>(vertices.corners.size() / 3));
    const bool welded = vertices.IsAnyWelded();
    const uint32_t* pCorner = vertices.corners.data();
    for (const Part& part : vertices.parts)
        for (uint32_t i = 0; i < part.faceCount; ++i, pCorner += 3) {
            Face& face = mesh.faces[part.firstFace + i];
            if (welded)
                face.setVerts(vertices.positions[pCorner[0]], vertices.positions[pCorner[1]],
                              vertices.positions[pCorner[2]]);
            else
                face.setVerts(pCorner[0], pCorner[1], pCorner[2]);
            face.setMatID(part.pPrimitive->materialId);
        }
}

// Every vertex of the file that is used is a texture vertex; the corners name it as they do there.
void SetTexCoords(const WeldedVertices& vertices, Mesh& mesh) {
    mesh.setNumTVerts(static_cast<int>(vertices.vertexCount));
    mesh.setNumTVFaces(mesh.numFaces);
    for (const Part& part : vertices.parts) {
        const AccessorView& view = part.pPrimitive->texCoords;
        for (uint32_t i = 0; !view.IsEmpty() && i < part.vertexCount; ++i) {
            float uv[2];
            view.Read(part.GetSource(i), uv, 2);
            mesh.tVerts[part.firstVertex + i] = {uv[0], 1.0f - uv[1], 0.0f};
        }
    }
    for (size_t i = 0; i < mesh.tvFace.size(); ++i)
        mesh.tvFace[i].setTVerts(vertices.corners[i * 3], vertices.corners[i * 3 + 1], vertices.corners[i * 3 + 2]);
}

} // namespace

WeldedVertices WeldVertices(const MeshData& mesh, FaceRange range, std::span<const float> morphWeights, bool skinned) {
    WeldedVertices vertices;
    GatherCorners(mesh, range, vertices);
    vertices.width = 3 + (skinned ? WeldedVertices::WordsOfSkinSet * mesh.skinSetCount : 0);
    vertices.words.resize(vertices.vertexCount * vertices.width);
    for (const Part& part : vertices.parts) {
        uint32_t* pRow = vertices.words.data() + part.firstVertex * vertices.width;
        ReadPositions(part, morphWeights, vertices.width, pRow);
        if (skinned)
            ReadSkin(part, vertices.width, pRow);
    }
    WeldResult weld = Weld({.words = vertices.words, .width = vertices.width});
    vertices.positions = std::move(weld.groups);
    vertices.firsts = std::move(weld.firsts);
    return vertices;
}

MeshDataSource::MeshDataSource(std::shared_ptr<const MeshData> pMesh, MeshShape shape)
    : m_pMesh(std::move(pMesh)), m_Shape(std::move(shape)) {}

std::unique_ptr<Mesh> MeshDataSource::Build(TimeValue /*t*/) const {
    const WeldedVertices vertices = WeldVertices(*m_pMesh, m_Shape.range, m_Shape.morphWeights, m_Shape.skinned);
    auto pMesh = std::make_unique<Mesh>();
    SetVertices(vertices, *pMesh);
    SetFaces(vertices, *pMesh);
    if (m_pMesh->hasTexCoords)
        SetTexCoords(vertices, *pMesh);
    SetSmoothing(*m_pMesh, m_Shape, vertices, *pMesh);
    return pMesh;
}

} // namespace gltf
