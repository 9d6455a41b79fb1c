#include "Host/Gltf/MeshData.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace gltf {

namespace {

// A face names its material in 16 bits.
constexpr size_t s_MostMaterials = 65536;

// Reads the primitives of one mesh.
class MeshReader {
public:
    MeshReader(const SceneFile& file, BufferStore& buffers, const Place& place, TexCoordSetOf texCoordSets)
        : m_File(file), m_Buffers(buffers), m_Place(place), m_TexCoordSets(texCoordSets) {}

    void ReadPrimitive(const Json& json, MeshData& mesh);

private:
    AccessorView ReadView(const Json& index) {
        const uint32_t accessor = index.IsUint() ? index.GetUint() : UINT32_MAX;
        return m_Buffers.GetAccessor(m_File, m_Place, accessor);
    }
    AccessorView ReadAttribute(const Json& attributes, const std::string& name, unsigned components, uint32_t count);
    void ReadIndices(const Json& json, PrimitiveData& primitive);
    void ReadSkinSets(const Json& attributes, PrimitiveData& primitive);
    void ReadMorphTargets(const Json& json, PrimitiveData& primitive);
    uint16_t GetMaterialId(int32_t material, MeshData& mesh);

    const SceneFile& m_File;
    BufferStore& m_Buffers;
    const Place& m_Place;
    TexCoordSetOf m_TexCoordSets;
    std::unordered_map<int32_t, size_t> m_MaterialIds;
};

bool IsFinite(const AccessorView& view) {
    if (!view.IsPlainFloat())
        return true;
    bool finite = true;
    for (uint32_t i = 0; i < view.count; ++i) {
        float p[3];
        std::memcpy(p, view.GetElement(i), sizeof p);
        // A number times 0 is 0, and nothing else is.
        finite &= p[0] * 0.0f + p[1] * 0.0f + p[2] * 0.0f == 0.0f;
    }
    return finite;
}

AccessorView MeshReader::ReadAttribute(const Json& attributes, const std::string& name, unsigned components,
                                       uint32_t count) {
    const Json* pIndex = FindMember(attributes, name);
    if (!pIndex)
        return {};
    const AccessorView view = ReadView(*pIndex);
    if (view.components != components)
        FailDamaged(m_Place, name + " has " + std::to_string(view.components) + " components instead of " +
                                 std::to_string(components));
    if (view.count != count)
        FailDamaged(m_Place, name + " has " + std::to_string(view.count) + " elements for " + std::to_string(count) +
                                 " vertices");
    return view;
}

void MeshReader::ReadIndices(const Json& json, PrimitiveData& primitive) {
    const Json* pIndex = FindMember(json, "indices");
    if (!pIndex)
        return;
    primitive.indices = ReadView(*pIndex);
    const ComponentType type = primitive.indices.type;
    if (primitive.indices.components != 1 ||
        (type != ComponentType::UnsignedByte && type != ComponentType::UnsignedShort &&
         type != ComponentType::UnsignedInt))
        FailDamaged(m_Place, "its indices are no whole numbers");
    const auto [known, isNew] = m_Buffers.GetChecks().highestIndices.try_emplace(pIndex->GetUint());
    if (isNew)
        known->second = FindHighestIndex(primitive.indices).value_or(0);
    const uint32_t highest = known->second;
    if (primitive.indices.count > 0 && highest >= primitive.vertexCount)
        FailDamaged(m_Place, "index " + std::to_string(highest) + " reaches beyond its " +
                                 std::to_string(primitive.vertexCount) + " vertices");
}

void MeshReader::ReadSkinSets(const Json& attributes, PrimitiveData& primitive) {
    for (int set = 0;; ++set) {
        const std::string suffix = std::to_string(set);
        PrimitiveData::SkinSet skinSet{
            .joints = ReadAttribute(attributes, "JOINTS_" + suffix, 4, primitive.vertexCount),
            .weights = ReadAttribute(attributes, "WEIGHTS_" + suffix, 4, primitive.vertexCount),
        };
        if (skinSet.joints.IsEmpty() != skinSet.weights.IsEmpty())
            FailDamaged(m_Place, "JOINTS_" + suffix + " has no weights, or the weights no joints");
        if (skinSet.joints.IsEmpty())
            return;
        if (skinSet.joints.type != ComponentType::UnsignedByte && skinSet.joints.type != ComponentType::UnsignedShort)
            FailDamaged(m_Place, "JOINTS_" + suffix + " holds no whole numbers");
        primitive.skinSets.push_back(skinSet);
    }
}

void MeshReader::ReadMorphTargets(const Json& json, PrimitiveData& primitive) {
    const Json* pTargets = FindArray(m_Place, json, "targets");
    if (!pTargets)
        return;
    for (const Json& target : pTargets->GetArray())
        primitive.morphTargets.push_back({.positions = ReadAttribute(target, "POSITION", 3, primitive.vertexCount),
                                          .normals = ReadAttribute(target, "NORMAL", 3, primitive.vertexCount)});
}

uint16_t MeshReader::GetMaterialId(int32_t material, MeshData& mesh) {
    const auto [found, isNew] = m_MaterialIds.try_emplace(material, mesh.materials.size());
    if (found->second >= s_MostMaterials)
        Fail(m_Place, "it has more than 65536 materials", "split the mesh");
    if (isNew)
        mesh.materials.push_back(material);
    return static_cast<uint16_t>(found->second);
}

void MeshReader::ReadPrimitive(const Json& json, MeshData& mesh) {
    const uint64_t mode = ReadSize(m_Place, json, "mode", static_cast<uint64_t>(PrimitiveMode::Triangles));
    if (mode > static_cast<uint64_t>(PrimitiveMode::TriangleFan))
        FailDamaged(m_Place, "its primitive mode " + std::to_string(mode) + " is unknown");
    PrimitiveData primitive{.mode = static_cast<PrimitiveMode>(mode)};
    if (!HasTriangles(primitive.mode)) {
        mesh.hasOtherModes = true;
        return;
    }
    const Json* pAttributes = FindObject(m_Place, json, "attributes");
    const Json* pPositions = pAttributes ? FindMember(*pAttributes, "POSITION") : nullptr;
    if (!pPositions)
        FailDamaged(m_Place, "a primitive has no POSITION");
    primitive.positions = ReadView(*pPositions);
    primitive.vertexCount = primitive.positions.count;
    if (primitive.positions.components != 3)
        FailDamaged(m_Place, "POSITION is not of three components");
    if (m_Buffers.GetChecks().finite.insert(pPositions->GetUint()).second && !IsFinite(primitive.positions))
        FailDamaged(m_Place, "POSITION holds something that is no number");

    const int32_t material = ReadIndex(m_Place, json, "material", m_TexCoordSets.size());
    const uint32_t set = material < 0 ? 0 : m_TexCoordSets[static_cast<size_t>(material)];
    primitive.normals = ReadAttribute(*pAttributes, "NORMAL", 3, primitive.vertexCount);
    primitive.texCoords = ReadAttribute(*pAttributes, "TEXCOORD_" + std::to_string(set), 2, primitive.vertexCount);
    ReadIndices(json, primitive);
    ReadSkinSets(*pAttributes, primitive);
    ReadMorphTargets(json, primitive);

    const uint32_t corners = primitive.indices.IsEmpty() ? primitive.vertexCount : primitive.indices.count;
    primitive.faceCount = CountTriangles(primitive.mode, corners);
    primitive.materialId = GetMaterialId(material, mesh);
    if (primitive.faceCount > UINT32_MAX / 3 - mesh.faceCount)
        Fail(m_Place, "it has more faces than can be counted", "split the mesh");
    mesh.faceCount += primitive.faceCount;
    mesh.hasTexCoords |= !primitive.texCoords.IsEmpty();
    mesh.hasNormals |= !primitive.normals.IsEmpty();
    mesh.allNormals &= !primitive.normals.IsEmpty();
    mesh.skinSetCount = std::max(mesh.skinSetCount, primitive.skinSets.size());
    mesh.primitives.push_back(std::move(primitive));
}

void CheckJoints(const Place& place, const PrimitiveData& primitive, size_t jointCount) {
    for (const PrimitiveData::SkinSet& set : primitive.skinSets)
        for (uint32_t vertex = 0; vertex < primitive.vertexCount; ++vertex)
            for (unsigned i = 0; i < 4; ++i) {
                const uint32_t joint = set.joints.ReadUnsigned(vertex, i);
                if (joint < jointCount)
                    continue;
                // Exporters fill unused places with anything.
                float weights[4];
                set.weights.Read(vertex, weights, 4);
                if (weights[i] > 0.0f)
                    FailDamaged(place, "a vertex hangs on joint " + std::to_string(joint) + " of a skin that has " +
                                           std::to_string(jointCount));
            }
}

} // namespace

std::vector<FaceRange> SplitFaces(uint32_t faceCount) {
    std::vector<FaceRange> ranges;
    uint32_t first = 0;
    do {
        ranges.push_back({first, std::min(faceCount - first, s_MostFacesOfMesh)});
        first += ranges.back().count;
    } while (first < faceCount);
    return ranges;
}

std::shared_ptr<const MeshData> ReadMesh(const SceneFile& file, const std::shared_ptr<BufferStore>& pBuffers,
                                         size_t index, TexCoordSetOf texCoordSets) {
    const Json& json = (*FindMember(file.GetRoot(), "meshes"))[static_cast<rapidjson::SizeType>(index)];
    Place place{.kind = "mesh", .index = index};
    place.name = ReadString(place, json, "name");
    auto pMesh = std::make_shared<MeshData>();
    pMesh->pBuffers = pBuffers;
    pMesh->allNormals = true;
    MeshReader reader(file, *pBuffers, place, texCoordSets);
    if (const Json* pPrimitives = FindArray(place, json, "primitives"))
        for (const Json& primitive : pPrimitives->GetArray())
            reader.ReadPrimitive(primitive, *pMesh);
    if (const Json* pWeights = FindArray(place, json, "weights"))
        for (const Json& weight : pWeights->GetArray())
            pMesh->morphWeights.push_back(ToFloat(weight).value_or(0.0f));
    return pMesh;
}

void CheckJoints(const Place& place, const MeshData& mesh, size_t jointCount) {
    // Primitives often share one set of vertices.
    const PrimitiveData* pLast = nullptr;
    for (const PrimitiveData& primitive : mesh.primitives) {
        if (!pLast || primitive.skinSets != pLast->skinSets)
            CheckJoints(place, primitive, jointCount);
        pLast = &primitive;
    }
}

} // namespace gltf
