// pvxdump --load, run as its users run it.
#include <gmock/gmock.h>

#include "Shared/Cross/RenderAnim/Files/SharedShaderFile.h"
#include "Tests/Host/App/ChildProgram.h"
#include "Tests/Shared/Cross/RenderAnim/Final/FinalModel.h"
#include "Tests/Shared_Tools/Burner/BurnerFolder.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

class GameLoadProgram : public FinalModelFixture {
protected:
    GameLoadProgram() {
        for (const char* pName : {"tools", "gen", "fin/art"})
            m_Folder.MakeFolder(pName);
        m_Folder.Write("pipeline.ini", BurnerFolder::GetIni());
    }

    // The model's bytes, whose shader art/shared lies in a file of its own, and that file's.
    static std::string MakeModelFile() { return Write(*MakeModel()); }
    static std::string MakeShaderFile() {
        const ShaderRef shader = MakeShader("art/shared");
        shader->SetChannelTexture(CN_Diffuse, AddTexture("art/oak"));
        const auto pStream = MakeWriteStream();
        EXPECT_TRUE(ra::WriteSharedShaderFinal(*pStream, *shader.GetData(), 0));
        return BytesOf(*pStream);
    }
    ProgramResult Load(const std::string& name) const {
        return RunProgram("pvxdump", {"--load", m_Folder.Native(name)});
    }
    // One line on standard error with the file and the reason.
    void ExpectFault(const std::string& name, const std::string& reason) const {
        const ProgramResult result = Load(name);
        EXPECT_EQ(result.status, 2) << reason;
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, AllOf(testing::StartsWith(m_Folder.Native(name) + ": "), HasSubstr(reason)));
        EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
    }

    TempFolder m_Folder;
};

TEST_F(GameLoadProgram, TheModelIsLoadedWithWhatBelongsToIt) {
    m_Folder.Write("fin/art/walker.obm", MakeModelFile());
    m_Folder.Write("fin/art/shared.qsh", MakeShaderFile());
    const ProgramResult result = Load("fin/art/walker.obm");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("walker.obm: loaded as DATA:art\\walker.obm, model \"Walker\"\n"
                                      "2 meshes, 9 vertices, 9 triangles, 2 bones, 2 animations, 2 shaders, "
                                      "2 textures, 2 markers, 1 camera; nothing is missing\n"));
    for (const char* pRow : {"  Body          6          8          1        2      1  -\n",
                             "  art/shared  its own file  diffuse  art/oak   16x16\n",
                             "  art/wood  16x16  DXT1       2", "  walk            3      0.5  1 of 2  -\n",
                             "  Muzzle  knee         (0 0 0)\n", "  Front   (1 2 3)   (4 5 6)\n"})
        EXPECT_THAT(result.out, HasSubstr(pRow));
}

TEST_F(GameLoadProgram, WhatIsMissingIsTold) {
    std::unique_ptr<RenderModel> pModel = MakeModel();
    pModel->GetMeshGroup()->SetXRefName(1, ra::Name("art/other"));
    std::string bytes = Write(*pModel);
    // Nothing has the texture of that name any more, but the shader asks for it.
    bytes.replace(bytes.find("art/wood"), 8, "art/pine");
    m_Folder.Write("fin/art/walker.obm", bytes);
    const std::string alone = Load("fin/art/walker.obm").out;
    EXPECT_THAT(alone, HasSubstr("3 things are missing\n"));
    for (const char* pRow : {"art/other, missing\n", "art/shared  missing, has a stand-in  -        -\n",
                             "Clay        the model                -        art/wood  missing, is pink\n"})
        EXPECT_THAT(alone, HasSubstr(pRow));

    m_Folder.MakeFolder("tools/art/ebps");
    m_Folder.Write("tools/art/ebps/missingmodel.obm", MakeModelFile());
    m_Folder.Write("fin/art/shared.qsh", MakeShaderFile());
    const std::string withTools = Load("fin/art/walker.obm").out;
    EXPECT_THAT(withTools, HasSubstr("2 things are missing\n"));
    EXPECT_THAT(withTools, HasSubstr("art/other, missing, has a stand-in\n"));
}

TEST_F(GameLoadProgram, FaultsAreOneLineWithTheFile) {
    const std::string bytes = MakeModelFile();
    for (const char* pName : {"fin/art/walker.obm", "gen/walker.obm"})
        m_Folder.Write(pName, bytes);
    m_Folder.Write("fin/cut.obm", bytes.substr(0, bytes.size() / 2));
    m_Folder.Write("fin/generic.obm", ChunkBytes::FileHeader() + NamedFolder("QPVX", "Walker", "", 1));
    m_Folder.Write("fin/walker.pvx", bytes);
    m_Folder.Write("fin/art/shared.qsh", "what");
    ExpectFault("fin/none.obm", ": there is no such file");
    ExpectFault("fin/cut.obm", "cut.obm: Failed to seek to end of chunk");
    ExpectFault("fin/generic.obm", "generic.obm: the model is of a tools' level, not a final one");
    ExpectFault("fin/walker.pvx", "--load takes an .obm");
    ExpectFault("gen/walker.obm", "lies in the final folder of no project of \"" + m_Folder.Native("pipeline.ini"));
    ExpectFault("fin/art/walker.obm", "walker.obm: DATA:art/shared.qsh: Not a valid chunky file!");
    std::filesystem::remove(m_Folder.Native("pipeline.ini"));
    ExpectFault("fin/art/walker.obm",
                "lies in no project: there is no pipeline.ini in \"" + m_Folder.Native("fin/art"));
    EXPECT_EQ(RunProgram("pvxdump", {"--load", "--json", "x.obm"}).status, 2);
}

} // namespace
