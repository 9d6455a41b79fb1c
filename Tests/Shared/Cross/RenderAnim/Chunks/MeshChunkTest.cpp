#include <cstring>
#include <functional>
#include <utility>

#include "Shared/Cross/RenderAnim/Chunks/MeshChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/MeshGroupChunk.h"
#include "Shared/Cross/RenderAnim/ShaderTypeInfo.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

// A mesh's data, field by field, for a test to change one of them.
struct MeshBytes {
    uint32_t transformCount = 1;
    uint32_t vertexCount = 3;
    uint32_t mask = 0x25;
    uint32_t primSetCount = 1;
    uint32_t indexCount = 3;
    uint16_t lastIndex = 0;
    uint16_t firstVertex = 0;
    uint16_t rangeCount = 3;
    uint32_t dataVersion = 2;
    uint32_t boundVersion = 2;

    std::string GetPayload() const {
        PayloadBytes bytes;
        bytes.U32(1).U8(0).U32(11).U32(0);
        bytes.U32(transformCount).Text("hip").U32(4);
        bytes.U32(vertexCount).U32(mask);
        bytes.F32({0, 0, 0, 1, 0, 0, 0, 1, 0}); // positions
        bytes.F32({0, 0, 1, 0, 0, 1, 0, 0, 1}); // normals
        bytes.F32({0, 0, 1, 0, 0, 1});          // texture coordinates
        bytes.U32(primSetCount).Text("Clay").U32(indexCount).U16({2, 1, lastIndex}).U16({firstVertex, rangeCount});
        return bytes.Get();
    }
    std::string GetBox() const {
        return PayloadBytes().U8(1).F32({1, 2, 3}).F32({4, 5, 6}).F32({1, 0, 0, 0, 1, 0, 0, 0, 1}).Get();
    }
    std::string Get() const {
        return NamedFolder(
            "MSLC", "Tile",
            ChunkBytes::Data("DATA", GetPayload(), dataVersion) + ChunkBytes::Data("BVOL", GetBox(), boundVersion), 1);
    }
};

class MeshChunk : public ModelFixture {
protected:
    static ra::MeshRecord Read(const std::string& chunk) {
        return ReadChunks(chunk, [](Chunky& chunky) { return ra::ReadMeshRecord(chunky); });
    }
    static std::string Write(const ra::Mesh& mesh) {
        return WriteChunks([&](Chunky& chunky, PayloadWriter& writer) { ra::WriteMesh(chunky, writer, mesh); });
    }
    // What the reader says of a file whose mesh was changed.
    static std::string GetFault(const std::function<void(MeshBytes&)>& change) {
        MeshBytes bytes;
        change(bytes);
        return FaultOf([&] { Read(bytes.Get()); });
    }
};

TEST_F(MeshChunk, ATableMayListAMeshTwice) {
    MakeShader("Clay");
    PayloadBytes table;
    table.U32(2);
    for (const uint32_t bone : {0u, 1u})
        table.Text("Tile").Text("").U32(bone);
    const std::string bytes = ChunkBytes::Folder("MSGR", MeshBytes().Get() + ChunkBytes::Data("DATA", table.Get()));
    const auto pGroup =
        ReadChunks(bytes, [](Chunky& chunky) { return ra::BuildMeshGroup(chunky, "Walker", ra::MeshForm::Generic); });
    ASSERT_EQ(pGroup->GetMeshCount(), 2u);
    EXPECT_EQ(pGroup->GetMesh(0), pGroup->GetMesh(1));
    EXPECT_EQ(pGroup->GetParentBone(1), 1);
}

TEST_F(MeshChunk, ReadsAndWritesBytesTypedByHand) {
    ra::MeshRecord record = Read(MeshBytes().Get());
    EXPECT_EQ(record.name, "Tile");
    EXPECT_EQ(record.minDetail, 1);
    EXPECT_FALSE(record.childSelection);
    EXPECT_EQ(record.polyCountHigh, 11u);
    EXPECT_EQ(record.skinnedTransforms.at(0).index, 4);
    EXPECT_EQ(record.levels[ra::Mesh::Poly_High].components, 0x25u);
    EXPECT_THAT(record.primSets.at(0).levels[ra::Mesh::Poly_High].indices, ElementsAre(2, 1, 0));
    EXPECT_EQ(record.boundVolume.GetBox().halfExtents, glm::vec3(4, 5, 6));
    MakeShader("Clay");
    EXPECT_EQ(Write(*ra::BuildMesh(std::move(record)).GetData()), MeshBytes().Get());
}

TEST_F(MeshChunk, EveryStoredComponentSurvivesAndNoOther) {
    const MeshRef mesh = MakeMesh("all", {MakeShader("Clay")}, 5, gz::s_AllComponents);
    const std::string bytes = Write(*mesh.GetData());
    const MeshRef again = ra::BuildMesh(Read(bytes));
    EXPECT_EQ(Write(*again.GetData()), bytes);
    const gz::VertexSet& before = *mesh->GetVertexSet(ra::Mesh::Poly_High);
    const gz::VertexSet& after = *again->GetVertexSet(ra::Mesh::Poly_High);
    EXPECT_EQ(after.GetFormat(), 0x27u);
    for (const gz::VertexComponent component : ra::s_StoredComponentOrder)
        for (uint32_t i = 0; i < 5; ++i)
            EXPECT_EQ(std::memcmp(static_cast<const char*>(before.GetData(component)) + i * before.GetStride(),
                                  static_cast<const char*>(after.GetData(component)) + i * after.GetStride(),
                                  gz::s_ComponentSizes[component]),
                      0)
                << "component " << component << ", vertex " << i;
    // A mask may name those that files never hold.
    MeshBytes other;
    other.mask = 0x25 | 0x1D8;
    EXPECT_EQ(Read(other.Get()).levels[ra::Mesh::Poly_High].components, 0x25u);
}

TEST_F(MeshChunk, FaultsNameMeshAndField) {
    const std::pair<std::function<void(MeshBytes&)>, const char*> cases[] = {
        {[](MeshBytes& b) { b.transformCount = 0x40000000; }, "skinned transform count 1073741824 exceeds its chunk"},
        {[](MeshBytes& b) { b.vertexCount = 65536; }, "vertex count 65536 is above 65535"},
        {[](MeshBytes& b) { b.vertexCount = 60000; }, "vertex array goes beyond its chunk"},
        {[](MeshBytes& b) { b.mask = 0x225; }, "component mask has bits of no component"},
        {[](MeshBytes& b) { b.primSetCount = 3; }, "primitive set count 3 exceeds its chunk"},
        {[](MeshBytes& b) { b.indexCount = 0x80000002; }, "index count 2147483650 exceeds its chunk"},
        {[](MeshBytes& b) { b.lastIndex = 3; }, "index 3 names none of 3 vertices"},
        {[](MeshBytes& b) { b.rangeCount = 0; }, "vertex range is empty or goes beyond the vertices"},
        {[](MeshBytes& b) { b.firstVertex = 1; }, "vertex range is empty or goes beyond the vertices"},
        {[](MeshBytes& b) { b.firstVertex = 65535; }, "vertex range is empty or goes beyond the vertices"},
    };
    for (const auto& [change, pFault] : cases)
        EXPECT_EQ(GetFault(change), std::string("mesh 'Tile': ") + pFault);
    EXPECT_THAT(GetFault([](MeshBytes& b) { b.dataVersion = 3; }), HasSubstr("Unsupported (newer) Chunk Version!"));
    EXPECT_THAT(GetFault([](MeshBytes& b) { b.boundVersion = 0; }), HasSubstr("version 0"));
    EXPECT_EQ(GetFault([](MeshBytes& b) { b.boundVersion = 1; }), "") << "the final form's";
    EXPECT_EQ(FaultOf([] { Read(NamedFolder("MSLC", "Tile", ChunkBytes::Data("BVOL", std::string(1, '\0'), 2), 1)); }),
              "Missing Chunk Type! (data of mesh 'Tile')");
}

TEST_F(MeshChunk, MissingShadersAreStoodInFor) {
    const MeshRef mesh = ra::BuildMesh(Read(MeshBytes().Get()));
    EXPECT_EQ(mesh->GetShader(0), GetDefaultShader());
    EXPECT_TRUE(ReportCapture::HasWarning("Mesh 'Tile': Unable to load shader 'Clay' (Make sure the MAX Ref does not "
                                          "have IgnoreShaders on!"));
}

TEST_F(MeshChunk, ASetWithoutTrianglesKeepsItsShader) {
    const ShaderRef clay = MakeShader("Clay");
    auto pMesh = std::make_unique<ra::Mesh>();
    pMesh->SetName("bare");
    pMesh->SetShaderCount(1);
    pMesh->SetShader(0, clay);
    const std::string bytes = Write(*pMesh);
    const MeshRef again = ra::BuildMesh(Read(bytes));
    EXPECT_EQ(again->GetShader(0), clay);
    EXPECT_EQ(again->GetPrimSet(0, ra::Mesh::Poly_High), nullptr);
    EXPECT_FALSE(again->GetBoundVolume().IsValid());
    EXPECT_EQ(Write(*again.GetData()), bytes);
}

} // namespace
