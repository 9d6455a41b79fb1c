// The files of the levels behind the exporter's, and those that lie beside models.
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Files/SharedShaderFile.h"
#include "Shared/Cross/RenderAnim/Final/FinalTextureChunk.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/Generic/MotionFile.h"
#include "Tests/Shared/Cross/RenderAnim/Final/FinalModel.h"
#include "Tests/Tools/pvxdump/Damage.h"
#include "Tools/pvxdump/Dump.h"

using nlohmann::json;
using testing::HasSubstr;

namespace {

class DumpLevels : public FinalModelFixture {
protected:
    static std::string Print(const std::string& bytes, const DumpOptions& options = {}) {
        return DumpFile(*MakeReadStream(bytes), "file", options);
    }
    static json PrintJson(const std::string& bytes) {
        return json::parse(Print(bytes, {.json = true, .vertices = true, .keys = true}));
    }
    template <class WriteFile>
    static std::string Bytes(WriteFile write) {
        const auto pStream = MakeWriteStream();
        write(*pStream);
        return BytesOf(*pStream);
    }
    static std::string WriteGeneric(const RenderModel& model) {
        return Bytes([&](ByteStream& stream) { ra::WriteGeneric(stream, model); });
    }
    static std::string WriteGenericMotion(const RenderModel& model) {
        return Bytes([&](ByteStream& stream) { ra::WriteMotionFile(stream, model); });
    }
};

TEST_F(DumpLevels, AModelsLevelIsToldByItsChunks) {
    const std::unique_ptr<RenderModel> pModel = MakeMoved();
    for (const bool isFinal : {false, true}) {
        const std::string bytes = isFinal ? Write(*pModel) : WriteGeneric(*pModel);
        const std::string text = Print(bytes);
        EXPECT_THAT(text,
                    HasSubstr(isFinal ? "model \"Walker\", final: 2 meshes" : "model \"Walker\", generic: 2 meshes"));
        for (const char* pPart : {"art/wood", "DXT1", "art/shared", "knee", "positions in their parents", "Muzzle",
                                  "Front", "opacity V offset", "0 to 2"})
            EXPECT_THAT(text, HasSubstr(pPart)) << isFinal;
        const json model = PrintJson(bytes);
        EXPECT_EQ(model["level"], isFinal ? "final" : "generic");
        EXPECT_EQ(model["skeleton"]["bones"][1]["position"], json({0.0, 1.0, 0.0}));
        EXPECT_EQ(model["sharedShaders"], json({"art/shared"}));
        EXPECT_EQ(model["markers"].size(), 2u);
        EXPECT_EQ(model["cameras"][0]["target"], json({4.0, 5.0, 6.0}));
        EXPECT_EQ(model["undecoded"], json::object());
        const json& anim = model["animations"][0];
        EXPECT_EQ(anim["bones"][1]["positionKeys"], json::parse("[[0,1,2,3],[1,4,5,6]]"));
        EXPECT_EQ(anim["bones"][1]["rotationKeyCount"], 2);
        EXPECT_EQ(anim["controls"][0]["drives"], "visibility");
    }
}

TEST_F(DumpLevels, AFinalMeshHasItsLowLevelToo) {
    const std::string bytes = Write(*MakeMoved());
    EXPECT_THAT(Print(bytes), HasSubstr("  low level         4          1  position texcoord"));
    const json low = PrintJson(bytes)["meshes"][0]["lowLevel"];
    EXPECT_EQ(low["vertexCount"], 4);
    EXPECT_EQ(low["primitiveSets"][0]["indices"], json({0, 1, 3}));
    EXPECT_EQ(low["positions"].size(), 4u);
    EXPECT_FALSE(PrintJson(bytes)["meshes"][1].contains("lowLevel"));
}

TEST_F(DumpLevels, MotionFilesAreTold) {
    const std::unique_ptr<RenderModel> pModel = MakeMoved();
    for (const bool isFinal : {false, true}) {
        const std::string bytes = isFinal ? WriteMotion(*pModel) : WriteGenericMotion(*pModel);
        const std::string text = Print(bytes);
        EXPECT_THAT(text, HasSubstr(isFinal ? "motion file, final: 2 motions, 2 actions, 1 event"
                                            : "motion file, generic: 2 motions, 2 actions, 1 event"));
        for (const char* pPart : {"1 animation of other models", "(-1 -2 -3) to (1 2 3)", "gravel", "speed >= 2.5",
                                  "lower", "fast, prone", "speed, Scaled [3, 4]", "Hold End", "7 to 8",
                                  "no transitions", "events of motions", "motions by chance", "selection"})
            EXPECT_THAT(text, HasSubstr(pPart)) << isFinal;
        const json motion = PrintJson(bytes);
        EXPECT_EQ(motion["level"], isFinal ? "final" : "generic");
        EXPECT_EQ(motion["animations"][0]["xref"], json({{"model", "art/other"}, {"animation", "run"}}));
        EXPECT_EQ(motion["animations"][0]["bounds"]["maximum"], json({1.0, 2.0, 3.0}));
        EXPECT_EQ(motion["events"][0]["parameters"][0]["value"], "gravel");
        EXPECT_EQ(motion["clauses"][1]["first"], true);
        EXPECT_EQ(motion["clauses"][2]["second"], "lower");
        EXPECT_EQ(motion["motions"][0]["delays"], json::parse("[[1,2],[3,4],[5,6],[7,8]]"));
        EXPECT_EQ(motion["motions"][0]["modifier"], "pace");
        EXPECT_TRUE(motion["motions"][1]["modifier"].is_null());
        EXPECT_EQ(motion["actions"][0]["motions"][0]["condition"], "running");
        EXPECT_EQ(motion["selection"]["mode"], 1);
    }
}

TEST_F(DumpLevels, SmallFilesAreToldByTheirTops) {
    MotionSide side;
    side.AddSamples();
    const std::string folders = side.Write();
    EXPECT_EQ(PrintJson(ChunkBytes::FileHeader() + ChunkBytes::Folder("ERML", folders))["kind"], "motion list");
    EXPECT_EQ(PrintJson(ChunkBytes::FileHeader() + ChunkBytes::Folder("ERTR", folders))["kind"], "action tree");
    const std::string event = NamedData("EVNT", "step", PayloadBytes().U32(0).Get(), 3);
    EXPECT_EQ(PrintJson(ChunkBytes::FileHeader() + event)["events"][0]["name"], "step");

    const TextureRef wood = AddTexture("art/oak");
    const std::string texture = Bytes([&](ByteStream& stream) {
        Chunky chunky{ByteStreamAdapter(&stream)};
        PayloadWriter writer;
        ra::WriteFinalTexture(chunky, writer, *wood.GetData(), 0);
    });
    EXPECT_THAT(Print(texture), HasSubstr("final texture"));
    EXPECT_EQ(PrintJson(texture)["width"], 16);

    const ShaderRef shader = MakeShader("Own");
    shader->SetChannelTexture(0, wood);
    const std::string shaderFile =
        Bytes([&](ByteStream& stream) { ra::WriteSharedShaderFinal(stream, *shader.GetData(), 0); });
    EXPECT_EQ(PrintJson(shaderFile)["textures"][0]["level"], "final");
}

TEST_F(DumpLevels, AnyDamageEndsInTextOrAnException) {
    const std::unique_ptr<RenderModel> pModel = MakeMoved();
    for (const std::string& bytes :
         {Write(*pModel), WriteGeneric(*pModel), WriteMotion(*pModel), WriteGenericMotion(*pModel)})
        ExpectTextOrException(bytes, 43, 1000, {DumpOptions(), {.json = true, .vertices = true, .keys = true}}, Print);
}

} // namespace
