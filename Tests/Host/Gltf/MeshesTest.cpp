#include "Tests/Host/Gltf/GltfFixture.h"

#include "Host/Gltf/MeshData.h"
#include "Host/Gltf/PositionWeld.h"
#include "Host/Gltf/Triangles.h"
#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Material.h"

#include <array>
#include <cmath>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class GltfMeshes : public GltfFixture {
protected:
    // Loads a scene whose only node has a mesh of these primitives.
    std::unique_ptr<Mesh> LoadMesh(const std::string& primitives, const std::string& nodeMore = "",
                                   const std::string& materials = "") {
        Load({.nodes = R"({"name":"N","mesh":0)" + nodeMore + "}",
              .meshes = MeshOf(primitives),
              .materials = materials});
        return MeshAt(Find("N"));
    }
    static std::array<uint32_t, 3> Corners(const Face& face) { return {face.v[0], face.v[1], face.v[2]}; }
    static std::array<uint32_t, 3> Corners(const TVFace& face) { return {face.t[0], face.t[1], face.t[2]}; }
    using Triple = std::array<uint32_t, 3>;
};

// Two triangles that share an edge by position; the vertices of the edge are there twice, with texture coordinates of
// their own.
TEST_F(GltfMeshes, PositionsAreWeldedAndCornersKeepTheirTextureVertices) {
    AddFloats({0, 0, 0, 1, 2, 3, 0, 1, 0, /**/ 0, 1, 0, 1, 2, 3, 1, 1, 0}, "VEC3");
    AddFloats({0, 0, 0.25f, 0.75f, 0, 1, /**/ 0.5f, 0.5f, 1, 0, 1, 1}, "VEC2");
    const auto pMesh = LoadMesh(Primitive("\"POSITION\":0,\"TEXCOORD_0\":1"));
    ASSERT_EQ(pMesh->numVerts, 4);
    ASSERT_EQ(pMesh->numTVerts, 6);
    EXPECT_EQ(pMesh->verts[1], Point3(1, -3, 2));
    EXPECT_EQ(Corners(pMesh->faces[0]), (Triple{0, 1, 2}));
    EXPECT_EQ(Corners(pMesh->faces[1]), (Triple{2, 1, 3}));
    EXPECT_EQ(Corners(pMesh->tvFace[1]), (Triple{3, 4, 5}));
    EXPECT_EQ(pMesh->tVerts[1], Point3(0.25f, 0.25f, 0));
    EXPECT_EQ(pMesh->tVerts[3], Point3(0.5f, 0.5f, 0));
    EXPECT_EQ(pMesh->faces[0].smGroup, 0u) << "without normals every face is flat";
    EXPECT_EQ(Find("N").GetMtl(), nullptr);
}

TEST_F(GltfMeshes, OnlyEqualBitsAreWelded) {
    const float near = std::nextafter(1.0f, 2.0f);
    AddFloats({1, 0, 0, 0, 1, 0, 0, 0, 1, /**/ near, 0, 0, 0, 1, -0.0f, 0, 0, 1}, "VEC3");
    EXPECT_EQ(LoadMesh(Primitive("\"POSITION\":0"))->numVerts, 5);
}

TEST_F(GltfMeshes, UnusedVerticesAreLeftOut) {
    AddFloats({9, 9, 9, 0, 0, 0, 1, 0, 0, 8, 8, 8, 0, 1, 0}, "VEC3");
    AddFloats({0, 0, 0.1f, 1, 0.2f, 1, 0, 0, 0.4f, 1}, "VEC2");
    AddIndices({1, 2, 4});
    const auto pMesh = LoadMesh(Primitive("\"POSITION\":0,\"TEXCOORD_0\":1", 2));
    ASSERT_EQ(pMesh->numVerts, 3);
    EXPECT_EQ(pMesh->verts[0], Point3(0, 0, 0));
    ASSERT_EQ(pMesh->numTVerts, 3);
    EXPECT_EQ(pMesh->tVerts[2].x, 0.4f);
}

// A primitive that takes few of very many vertices goes another way.
TEST_F(GltfMeshes, AFewVerticesOfManyCostNoTableOfAll) {
    std::vector<float> positions(15000);
    for (size_t i = 0; i < positions.size(); ++i)
        positions[i] = static_cast<float>(i);
    AddFloats(positions, "VEC3");
    AddIndices({4000, 7, 300});
    const auto pMesh = LoadMesh(Primitive("\"POSITION\":0", 1));
    ASSERT_EQ(pMesh->numVerts, 3);
    EXPECT_EQ(Corners(pMesh->faces[0]), (Triple{2, 0, 1}));
    EXPECT_EQ(pMesh->verts[2].x, 12000.0f);
    const auto pSecond =
        LoadMesh(Primitive("\"POSITION\":0", 1) + "," + Primitive("\"POSITION\":0", AddIndices({5, 2, 9})));
    const float expected[] = {15.0f, 6.0f, 27.0f};
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ(pSecond->verts[pSecond->faces[1].v[i]].x, expected[i]) << "behind those of the first primitive";
}

TEST_F(GltfMeshes, StripsAndFansBecomeTriangles) {
    std::vector<uint32_t> corners;
    gltf::AppendTriangles(gltf::PrimitiveMode::TriangleStrip, {}, 0, 3, corners);
    EXPECT_THAT(corners, ElementsAre(0, 1, 2, /**/ 1, 3, 2, /**/ 2, 3, 4));
    corners.clear();
    gltf::AppendTriangles(gltf::PrimitiveMode::TriangleFan, {}, 1, 2, corners);
    EXPECT_THAT(corners, ElementsAre(2, 3, 0, /**/ 3, 4, 0));
    using gltf::PrimitiveMode;
    EXPECT_EQ(gltf::CountTriangles(PrimitiveMode::Triangles, 8), 2u);
    EXPECT_EQ(gltf::CountTriangles(PrimitiveMode::TriangleStrip, 8), 6u);
    EXPECT_EQ(gltf::CountTriangles(PrimitiveMode::TriangleFan, 2), 0u);
    EXPECT_EQ(gltf::CountTriangles(PrimitiveMode::LineStrip, 8), 0u);

    AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0}, "VEC3");
    Add(std::vector<uint8_t>{3, 2, 1, 0}, 5121, "SCALAR", 4);
    const auto pMesh = LoadMesh(Primitive("\"POSITION\":0", 1, ",\"mode\":5"));
    EXPECT_EQ(Corners(pMesh->faces[1]), (Triple{2, 0, 1}));
}

TEST_F(GltfMeshes, SharpAndSmoothEdgesFollowTheNormals) {
    // Two triangles along an edge whose vertices are there twice.
    AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0, /**/ 0, 1, 0, 1, 0, 0, 1, 1, 0}, "VEC3");
    const int same = AddFloats({0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1}, "VEC3");
    const int hard = AddFloats({0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 1, 0, 0, 1, 0, 0, 1, 0}, "VEC3");
    const auto smooth = LoadMesh(Primitive("\"POSITION\":0,\"NORMAL\":" + std::to_string(same)));
    EXPECT_NE(smooth->faces[0].smGroup & smooth->faces[1].smGroup, 0u);
    const auto sharp = LoadMesh(Primitive("\"POSITION\":0,\"NORMAL\":" + std::to_string(hard)));
    EXPECT_EQ(sharp->faces[0].smGroup | sharp->faces[1].smGroup, 0u);
    const auto told = LoadMesh(Primitive("\"POSITION\":0,\"NORMAL\":" + std::to_string(hard)),
                               R"(,"extras":{"host":{"smoothing":[5,4294967295]}})");
    EXPECT_EQ(told->faces[0].smGroup, 5u);
    EXPECT_EQ(told->faces[1].smGroup, 0xffffffffu);
    EXPECT_THAT(m_Warnings, testing::IsEmpty());
    LoadMesh(Primitive("\"POSITION\":0"), R"(,"extras":{"host":{"smoothing":[5]}})");
    EXPECT_THAT(m_Warnings, ElementsAre(HasSubstr("has 1 mask for 2 faces")));
    // A primitive without normals beside one with: its faces are flat.
    const auto mixed =
        LoadMesh(Primitive("\"POSITION\":0,\"NORMAL\":" + std::to_string(same)) + "," + Primitive("\"POSITION\":0"));
    EXPECT_NE(mixed->faces[0].smGroup & mixed->faces[1].smGroup, 0u);
    EXPECT_EQ(mixed->faces[2].smGroup | mixed->faces[3].smGroup, 0u);
    // The same where the two never meet.
    AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0}, "VEC3");
    AddFloats({5, 0, 0, 6, 0, 0, 5, 1, 0, 6, 1, 0}, "VEC3");
    AddFloats({0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1}, "VEC3");
    AddIndices({0, 1, 2, 2, 1, 3});
    const auto apart = LoadMesh(Primitive("\"POSITION\":3,\"NORMAL\":5", 6) + "," + Primitive("\"POSITION\":4", 6));
    EXPECT_NE(apart->faces[0].smGroup & apart->faces[1].smGroup, 0u);
    EXPECT_EQ(apart->faces[2].smGroup | apart->faces[3].smGroup, 0u);
}

TEST_F(GltfMeshes, PrimitivesBecomeOneMeshWithMaterialIds) {
    AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0}, "VEC3");
    AddFloats({0.5f, 0.25f, 1, 1, 0, 0}, "VEC2");
    const std::string plain = "\"POSITION\":0";
    const std::string mapped = "\"POSITION\":0,\"TEXCOORD_0\":1";
    const auto pMesh = LoadMesh(Primitive(mapped, -1, ",\"material\":1") + "," + Primitive(plain) + "," +
                                    Primitive(plain, -1, ",\"material\":0") + "," +
                                    Primitive(plain, -1, ",\"material\":1") + "," + Primitive(plain, -1, ",\"mode\":1"),
                                "", R"({"name":"Red"},{"name":"default"})");
    ASSERT_EQ(pMesh->numFaces, 4);
    EXPECT_EQ(pMesh->numVerts, 3);
    const int ids[] = {0, 1, 2, 0};
    for (size_t i = 0; i < 4; ++i)
        EXPECT_EQ(pMesh->faces[i].getMatID(), ids[i]);
    EXPECT_EQ(pMesh->tVerts[pMesh->tvFace[0].t[0]], Point3(0.5f, 0.75f, 0));
    EXPECT_EQ(pMesh->tVerts[pMesh->tvFace[1].t[0]], Point3(0, 0, 0));
    Mtl* pMtl = Find("N").GetMtl();
    ASSERT_EQ(pMtl->ClassID(), MULTI_CLASS_ID);
    ASSERT_EQ(pMtl->NumSubMtls(), 3);
    EXPECT_STREQ(pMtl->GetSubMtl(0)->GetName(), "default");
    EXPECT_STREQ(pMtl->GetSubMtl(1)->GetName(), "Default001");
    EXPECT_EQ(static_cast<StdMat*>(pMtl->GetSubMtl(1))->GetDiffuse(0), Color(1, 1, 1));
    EXPECT_STREQ(pMtl->GetSubMtl(2)->GetName(), "Red");
    EXPECT_THAT(m_Warnings, ElementsAre(HasSubstr("mesh 0: its points and lines are left out")));
}

TEST_F(GltfMeshes, TextureVerticesAreThoseOfTheBaseColourTexturesSet) {
    AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0}, "VEC3");
    AddFloats({0, 0, 0, 0, 0, 0}, "VEC2");
    AddFloats({0.25f, 0, 0.25f, 0, 0.25f, 0}, "VEC2");
    const std::string attributes = "\"POSITION\":0,\"TEXCOORD_0\":1,\"TEXCOORD_1\":2";
    Load({.nodes = R"({"name":"N","mesh":0},{"name":"Glows","mesh":1})",
          .meshes = MeshOf(Primitive(attributes, -1, ",\"material\":0")) + "," +
                    MeshOf(Primitive(attributes, -1, ",\"material\":1")),
          .materials = R"({"name":"M","pbrMetallicRoughness":{"baseColorTexture":{"index":0,"texCoord":1}},
                           "emissiveTexture":{"index":0}},
                          {"name":"E","emissiveTexture":{"index":0,"texCoord":1}})",
          .more = R"("textures":[{"source":0}],"images":[{"uri":"a.tga"}])"});
    EXPECT_EQ(MeshAt(Find("N"))->tVerts[0].x, 0.25f);
    EXPECT_EQ(MeshAt(Find("Glows"))->tVerts[0].x, 0.25f) << "without one, of the emissive texture's";
    EXPECT_THAT(m_Warnings,
                ElementsAre(HasSubstr("material \"M\": the emissive texture lies on texture coordinates 0")));
}

TEST_F(GltfMeshes, QuantizedStridedAndSparseAttributesAreRead) {
    // Positions in normalised shorts, eight bytes apart.
    const int packed =
        Add(std::vector<int16_t>{32767, -32768, 0, 99, 0, 16384, -32767, 99, 0, 0, 32767, 99}, 5122, "VEC3", 0);
    const int view = AddView(0, 24, ",\"byteStride\":8");
    const int normalized = AddAccessor(R"({"bufferView":)" + std::to_string(view) +
                                       R"(,"componentType":5122,"normalized":true,"count":3,"type":"VEC3"})");
    const int plain =
        AddAccessor(R"({"bufferView":)" + std::to_string(view) + R"(,"componentType":5122,"count":3,"type":"VEC3"})");
    EXPECT_EQ(packed, 0);
    const auto pMesh = LoadMesh(Primitive("\"POSITION\":" + std::to_string(normalized)));
    EXPECT_EQ(pMesh->verts[0], Point3(1, 0, -1)) << "-32768 is -1 too";
    EXPECT_EQ(pMesh->verts[1], Point3(0, 1, 16384 / 32767.0f));
    EXPECT_EQ(LoadMesh(Primitive("\"POSITION\":" + std::to_string(plain)))->verts[1], Point3(0, 32767, 16384));

    // Zeros, but for element 1.
    const size_t indices = m_Buffer.size();
    AddIndices({1});
    const size_t values = m_Buffer.size();
    AddFloats({5, 6, 7}, "VEC3");
    const int indexView = AddView(indices, 2);
    const int valueView = AddView(values, 12);
    const int sparse =
        AddAccessor(R"({"componentType":5126,"count":3,"type":"VEC3","sparse":{"count":1,"indices":{"bufferView":)" +
                    std::to_string(indexView) + R"(,"componentType":5123},"values":{"bufferView":)" +
                    std::to_string(valueView) + "}}}");
    const auto pSparse = LoadMesh(Primitive("\"POSITION\":" + std::to_string(sparse)));
    ASSERT_EQ(pSparse->numVerts, 2);
    EXPECT_EQ(pSparse->verts[1], Point3(5, -7, 6));
}

TEST_F(GltfMeshes, MorphTargetsTakeTheirDefaultWeights) {
    AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0}, "VEC3");
    AddFloats({0, 0, 4, 0, 0, 0, 0, 0, 0}, "VEC3");
    const std::string mesh =
        MeshOf(Primitive("\"POSITION\":0", -1, R"(,"targets":[{"POSITION":1}])"), R"(,"weights":[0.5])");
    Load({.nodes = R"({"name":"A","mesh":0},{"name":"B","mesh":0,"weights":[0.25]})", .meshes = mesh});
    EXPECT_EQ(MeshAt(Find("A"))->verts[0], Point3(0, -2, 0));
    EXPECT_EQ(MeshAt(Find("B"))->verts[0], Point3(0, -1, 0));
}

TEST_F(GltfMeshes, MorphTargetsMakeEdgesHard) {
    AddFloats({0, 0, 0, 1, 0, 0, 0, 1, 0, /**/ 0, 1, 0, 1, 0, 0, 1, 1, 0}, "VEC3");
    AddFloats({0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 1}, "VEC3");
    AddFloats({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, -1, 0, 1, -1, 0, 1, -1}, "VEC3");
    Load({.nodes = R"({"name":"A","mesh":0,"weights":[0]},{"name":"B","mesh":0,"weights":[1]})",
          .meshes = MeshOf(Primitive("\"POSITION\":0,\"NORMAL\":1", -1, R"(,"targets":[{"NORMAL":2}])"))});
    const auto smooth = MeshAt(Find("A"));
    EXPECT_NE(smooth->faces[0].smGroup & smooth->faces[1].smGroup, 0u);
    const auto sharp = MeshAt(Find("B"));
    EXPECT_EQ(sharp->faces[0].smGroup | sharp->faces[1].smGroup, 0u);
}

TEST_F(GltfMeshes, AMeshThatIsTooLargeBecomesSeveralNodes) {
    constexpr uint32_t faces = 2 * gltf::s_MostFacesOfMesh + 1;
    std::vector<float> positions{0, 0, 0};
    std::vector<uint32_t> indices;
    for (uint32_t i = 0; i < faces; ++i) {
        positions.insert(positions.end(), {static_cast<float>(i), 1, 0});
        indices.insert(indices.end(), {0, i + 1, (i + 1) % faces + 1});
    }
    AddFloats(positions, "VEC3");
    Add(indices, 5125, "SCALAR", indices.size());
    Load({.nodes = R"({"name":"Group","children":[1,2]},
                      {"name":"Rock","mesh":0,"translation":[1,0,0],"children":[3],
                       "extras":{"RenderPriority":3,"host":{"visibility":[[0,0.5]]}}},
                      {"name":"rock_2"},{"name":"Child"})",
          .meshes = MeshOf(Primitive("\"POSITION\":0", 1))});
    EXPECT_THAT(m_Warnings, ElementsAre(HasSubstr("node \"Rock\": its mesh has 43691 faces and becomes 3 nodes")));
    INode& group = Find("Group");
    ASSERT_EQ(group.NumberOfChildren(), 4);
    const char* names[] = {"Rock", "Rock_3", "Rock_4", "rock_2"};
    for (int i = 0; i < 4; ++i)
        EXPECT_STREQ(group.GetChildNode(i)->GetName(), names[i]);
    EXPECT_EQ(Find("Child").GetParentNode(), &Find("Rock"));
    const int counts[] = {21845, 21845, 1};
    for (int i = 0; i < 3; ++i) {
        INode& part = *group.GetChildNode(i);
        const auto pMesh = MeshAt(part);
        EXPECT_EQ(pMesh->numFaces, counts[i]);
        EXPECT_EQ(pMesh->verts[pMesh->faces[0].v[1]].x, static_cast<float>(21845 * i));
        EXPECT_TRUE(part.UserPropExists("RenderPriority"));
        EXPECT_EQ(part.GetVisibility(0), 0.5f);
        EXPECT_EQ(part.GetNodeTM(0)[3].x, 1.0f);
    }
    EXPECT_EQ(MeshAt(*group.GetChildNode(2))->numVerts, 3);
}

TEST(GltfWeld, NumbersTheDistinctRowsByTheirFirstOccurrence) {
    const std::vector<uint32_t> words = {1, 2, 3, /**/ 1, 2, 4, /**/ 1, 2, 3, /**/ 0, 0, 0, /**/ 1, 2, 4};
    const gltf::WeldResult result = gltf::Weld({.words = words});
    EXPECT_THAT(result.groups, ElementsAre(0, 1, 0, 2, 1));
    EXPECT_THAT(result.firsts, ElementsAre(0, 1, 3));
    const gltf::WeldResult wide = gltf::Weld({.words = std::span(words).first(10), .width = 5});
    EXPECT_THAT(wide.firsts, ElementsAre(0, 1));
    EXPECT_TRUE(gltf::Weld({}).groups.empty());
}

} // namespace
