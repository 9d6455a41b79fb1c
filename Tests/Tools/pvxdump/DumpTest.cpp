#include <limits>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"
#include "Tests/Tools/pvxdump/Damage.h"
#include "Tools/pvxdump/ChunkTree.h"
#include "Tools/pvxdump/Dump.h"
#include "Tools/pvxdump/TextFormat.h"
#include "Tools/pvxdump/TextTable.h"

using nlohmann::json;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

class Dump : public ModelFixture {
protected:
    static std::string MakeModelFile() {
        const MeshRef body = MakeMesh("Body", {MakeShader("Clay")}, 4, 0x27);
        body->SetSkinnedTransformCount(1);
        body->SetSkinnedTransform(0, ra::Name("hip"), 0);
        RenderModel model;
        model.SetName("Walker");
        model.SetMeshGroup(MakeGroup({body, MakeMesh("Far", {})}));
        model.GetMeshGroup()->SetXRefName(1, ra::Name("art/other"));
        model.GetMeshGroup()->SetParentBone(0, 1);
        model.SetSkeleton(MakeChain({"hip", "knee"}));
        model.AddMarker({.name = ra::Name("Muzzle"), .m_parentName = ra::Name("knee")});
        model.AddCamera({.name = ra::Name("Front"), .fieldOfView = 1, .farClip = 10});
        const auto pStream = MakeWriteStream();
        ra::WriteIntermediate(*pStream, model, {});
        return BytesOf(*pStream);
    }
    static std::string Print(const std::string& bytes, const DumpOptions& options = {}) {
        return DumpFile(*MakeReadStream(bytes), "walker.pvx", options);
    }
    static json PrintJson(const std::string& bytes, bool vertices = false) {
        return json::parse(Print(bytes, {.json = true, .vertices = vertices}));
    }
    static std::string MakeModel(const std::string& children, uint32_t version = 1) {
        return ChunkBytes::FileHeader() + NamedFolder("QPVX", "Walker", children, version);
    }
};

TEST_F(Dump, TextNamesEverything) {
    const std::string text = Print(MakeModelFile());
    EXPECT_THAT(text, HasSubstr("model \"Walker\", intermediate: 2 meshes, 4 vertices, 2 triangles"));
    for (const char* pPart :
         {"Clay", "Body", "position weights normal texcoord", "(-1 -1 -1) to (1 2 3)", "knee",
          "skeleton of 2 bones, positions in the world", "in model art/other", "Muzzle", "Front", "57.3 degrees"})
        EXPECT_THAT(text, HasSubstr(pPart));
}

TEST_F(Dump, JsonHasAllThereIs) {
    const std::string bytes = MakeModelFile();
    const json model = PrintJson(bytes);
    EXPECT_EQ(model["file"], "walker.pvx");
    EXPECT_EQ(model["size"], bytes.size());
    EXPECT_EQ(model["shaders"][0]["name"], "Clay");
    EXPECT_EQ(model["shaders"][0]["channels"].size(), 6u);
    EXPECT_EQ(model["skeleton"]["bones"][1]["parentName"], "hip");
    const json& body = model["meshes"][0];
    EXPECT_EQ(body["vertexCount"], 4);
    EXPECT_EQ(body["parentBoneName"], "knee");
    EXPECT_EQ(body["components"], json({"position", "weights", "normal", "texcoord"}));
    EXPECT_EQ(body["bounds"]["halfExtents"], json({1.0, 1.5, 2.0}));
    EXPECT_EQ(body["primitiveSets"][0]["indexCount"], 6);
    EXPECT_FALSE(body.contains("positions"));
    EXPECT_EQ(model["meshes"][1]["xrefModel"], "art/other");
    EXPECT_EQ(model["markers"][0]["transform"].size(), 12u);
    EXPECT_EQ(model["cameras"][0]["far"], 10.0);
}

TEST_F(Dump, VerticesAreThoseOfTheMesh) {
    const json body = PrintJson(MakeModelFile(), true)["meshes"][0];
    EXPECT_EQ(body["primitiveSets"][0]["indices"], json({0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(body["positions"].size(), 4u);
    EXPECT_EQ(body["normals"][3].size(), 3u);
    EXPECT_EQ(body["texcoords"][3].size(), 2u);
    // The fixture's bytes: 16 a vertex, 5 a component, 1 a place.
    EXPECT_EQ(body["boneIndices"][2], json({32 + 5 + 12, 32 + 5 + 13, 32 + 5 + 14, 32 + 5 + 15}));
}

TEST_F(Dump, MeshesOfOneNameKeepTheirOrder) {
    RenderModel model;
    model.SetName("Walker");
    const std::vector<ShaderRef> shaders{MakeShader("Clay")};
    model.SetMeshGroup(MakeGroup({MakeMesh("A", shaders, 4), MakeMesh("A", shaders, 6)}));
    const auto pStream = MakeWriteStream();
    ra::WriteIntermediate(*pStream, model, {});
    const json meshes = PrintJson(BytesOf(*pStream))["meshes"];
    ASSERT_EQ(meshes.size(), 2u);
    EXPECT_EQ(meshes[0]["vertexCount"], 4);
    EXPECT_EQ(meshes[1]["vertexCount"], 6);
}

TEST_F(Dump, AnimationsAreToldByTheirStreams) {
    const std::string control = PayloadBytes().U32(0).U32(1).U32(4).U32(2).F32({0, 0.25f, 1, 0.75f}).Get();
    const std::string parts =
        ChunkBytes::Data("INFO", PayloadBytes().U32(45).F32({1.5f}).Get()) +
        NamedData("BANM", "hip", PayloadBytes().U32(1).F32({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}).U8(1).Get(), 1) +
        NamedData("BANM", "knee", PayloadBytes().U32(0).U8(0).Get(), 1) + NamedData("CONS", "Glass", control, 1) +
        NamedData("CONS", "Body", PayloadBytes().U32(2).U32(0).U32(0).U32(1).F32({0, 1}).Get(), 1) +
        NamedData("CMRA", "Front",
                  PayloadBytes().U32(1).F32({0, 5, 6, 7}).U32(1).F32({0, 0.5f, 0.25f, 0.125f, 1}).Get(), 1);
    const std::string bytes = MakeModel(NamedFolder("ANIM", "walk", NamedFolder("DATA", "walk", parts, 1), 1));
    const std::string text = Print(bytes);
    EXPECT_THAT(text,
                HasSubstr("walk           45     1.5 s        30      2         1       0 to 1         2        1"));
    EXPECT_THAT(text, HasSubstr("shader  Glass  opacity U offset     2  0.25 to 0.75"));
    EXPECT_THAT(text, HasSubstr("mesh    Body   visibility           1  1"));
    const json anim = PrintJson(bytes)["animations"][0];
    EXPECT_EQ(anim["frameCount"], 45);
    EXPECT_EQ(anim["framesPerSecond"], 30.0);
    EXPECT_EQ(anim["bones"][1], json({{"name", "knee"}, {"animated", false}, {"keyCount", 0}}));
    EXPECT_EQ(anim["controls"][0]["drives"], "opacity U offset");
    EXPECT_EQ(anim["cameras"][0]["rotationKeyCount"], 1);
    const json keys = json::parse(Print(bytes, {.json = true, .keys = true}))["animations"][0];
    EXPECT_EQ(keys["bones"][0]["keys"], json::parse("[[0,1,2,3,4,5,6,7,8,9,10,11,12]]"));
    EXPECT_EQ(keys["controls"][0]["keys"], json::parse("[[0,0.25],[1,0.75]]"));
    EXPECT_EQ(keys["cameras"][0]["positionKeys"], json::parse("[[0,5,6,7]]"));
    EXPECT_EQ(keys["cameras"][0]["rotationKeys"], json::parse("[[0,0.5,0.25,0.125,1]]"));
}

TEST_F(Dump, ChunksAreToldWithTheirPlaces) {
    const std::string bytes =
        ChunkBytes::FileHeader() +
        NamedFolder("AAAA", "x", ChunkBytes::Data("BBBB", "12345", 3) + ChunkBytes::Folder("CCCC", ""), 2) +
        ChunkBytes::Data("DDDD", "");
    const std::vector<ChunkNode> nodes = ReadChunkTree(*MakeReadStream(bytes));
    ASSERT_EQ(nodes.size(), 4u);
    const uint32_t offsets[] = {24, 46, 71, 91};
    const uint32_t depths[] = {0, 1, 1, 0};
    for (size_t i = 0; i < nodes.size(); ++i) {
        EXPECT_EQ(nodes[i].offset, offsets[i]);
        EXPECT_EQ(nodes[i].depth, depths[i]);
    }
    EXPECT_EQ(nodes[0].name, "x");
    EXPECT_EQ(nodes[1].version, 3u);
    EXPECT_EQ(nodes[1].size, 5u);
    const json tree = json::parse(Print(bytes, {.json = true, .chunks = true}))["chunks"];
    EXPECT_EQ(tree[0]["children"][0]["id"], "BBBB");
    EXPECT_EQ(tree[0]["children"][1]["children"], json::array());
    EXPECT_EQ(tree[1]["offset"], 91);
    EXPECT_THAT(Print(bytes, {.chunks = true}), HasSubstr("  BBBB  DATA        3      5      46"));
    EXPECT_TRUE(ReadChunkTree(*MakeReadStream(ChunkBytes::FileHeader())).empty());
}

TEST_F(Dump, ChunksNestedWithoutEndAreRefused) {
    std::string bytes;
    for (int i = 0; i < 202; ++i)
        bytes = ChunkBytes::Folder("DEEP", bytes);
    EXPECT_THROW(ReadChunkTree(*MakeReadStream(ChunkBytes::FileHeader() + bytes)), Chunky::Exception);
}

TEST_F(Dump, WhatIsntDecodedIsSaid) {
    const std::string bytes = MakeModel(ChunkBytes::Folder("WHAT", "") + ChunkBytes::Data("WHAT", ""));
    EXPECT_EQ(PrintJson(bytes)["undecoded"], json({{"WHAT", 2}}));
    EXPECT_TRUE(PrintJson(bytes)["skeleton"].is_null());
    EXPECT_THAT(Print(bytes), HasSubstr("not decoded"));
}

TEST_F(Dump, WhoBurnedTheFileIsTold) {
    const std::string info = PayloadBytes().Text("art\\a\n.pvx").U32(7).Text("me").Text("May 1, 2001").Get();
    const std::string head = ChunkBytes::FileHeader() + NamedData("FBIF", "FileBurnInfo", info, 1);
    const std::string model = MakeModelFile();
    const std::string text = Print(head + model.substr(24));
    EXPECT_THAT(text,
                HasSubstr(" triangles\nburned from \"art\\a\\x0A.pvx\" by me, May 1, 2001, burner version 7\n\n"));
    EXPECT_THAT(Print(model), Not(HasSubstr("burned")));
    EXPECT_FALSE(PrintJson(model).contains("burnInfo"));
    // Ahead of whatever a burn writes.
    for (const std::string& content :
         {NamedFolder("QPVX", "Walker", "", 3), ChunkBytes::Folder("SHRF", "", 1), ChunkBytes::Folder("QEBP", "", 4)}) {
        const json out = PrintJson(head + content);
        EXPECT_EQ(out["burnInfo"],
                  json({{"source", "art\\a\n.pvx"}, {"burnerVersion", 7}, {"user", "me"}, {"date", "May 1, 2001"}}));
        EXPECT_GT(out.size(), 3u);
    }
}

TEST_F(Dump, FaultsSayWhatIsWrong) {
    const auto getFault = [](const std::string& bytes) -> std::string {
        try {
            Print(bytes);
        } catch (const std::exception& exception) {
            return exception.what();
        }
        return "no fault";
    };
    EXPECT_EQ(getFault(MakeModel("", 4)),
              "the model has version 4, this build decodes up to 3; --chunks shows its chunks");
    EXPECT_EQ(getFault(ChunkBytes::FileHeader() + ChunkBytes::Folder("QEBP", "", 5)),
              "the motion file has version 5, this build decodes up to 4; --chunks shows its chunks");
    EXPECT_EQ(getFault(ChunkBytes::FileHeader()), "holds nothing that this build decodes; --chunks shows its chunks");
    for (const std::string& note : {ChunkBytes::Data("FBIF", "note"), ChunkBytes::Data("FBIF", "", 2)})
        EXPECT_THAT(getFault(ChunkBytes::FileHeader() + note + MakeModel("").substr(24)),
                    AllOf(StartsWith("who burned it can't be read ("), EndsWith("); --chunks shows its chunks")));
    EXPECT_EQ(getFault("no chunks at all"), "Not a valid chunky file!");
    EXPECT_EQ(getFault(MakeModel("") + "rest"), "Not a valid chunk header!");
}

TEST_F(Dump, AnyDamageEndsInTextOrAnException) {
    ExpectTextOrException(MakeModelFile(), 42, 2000,
                          {DumpOptions(), {.json = true, .vertices = true}, {.chunks = true}}, Print);
}

TEST(TextFormatTest, ValuesLookAsPeopleWriteThem) {
    EXPECT_EQ(TextFormat::Count(999), "999");
    EXPECT_EQ(TextFormat::Count(1234567), "1,234,567");
    EXPECT_EQ(TextFormat::Count(1, "vertex", "vertices"), "1 vertex");
    EXPECT_EQ(TextFormat::Number(2.50), "2.5");
    EXPECT_EQ(TextFormat::Number(-0.00001), "0");
    EXPECT_EQ(TextFormat::Number(100), "100");
    EXPECT_EQ(TextFormat::Number(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(TextFormat::Name("a\x1B[2Jb\n"), "a\\x1B[2Jb\\x0A");
    EXPECT_EQ(TextFormat::Code(FourCC("MSLC")), "MSLC");
    EXPECT_EQ(TextFormat::Code(7), "0x00000007");
}

TEST(TextTableTest, ColumnsAreAlignedByLetters) {
    TextTable table({{"name"}, {"n", TextTable::Align::Right}});
    table.AddRow({"Ärmel", "5"});
    table.AddRow({"x", "1,000"});
    std::string text;
    table.Print(text, 1);
    EXPECT_EQ(text, " name       n\n Ärmel      5\n x      1,000\n");
}

} // namespace
