#include "Shared/Cross/RenderAnim/Files/SharedShaderFile.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/PC/Debug/Process.h"
#include "Shared_Tools/PVXExport/Merge/mergeburn.h"
#include "Tests/Shared_Tools/PVXExport/Merge/MergeFixture.h"

using testing::HasSubstr;

namespace {

class SharedTextures : public MergeFixture {
protected:
    SharedTextures() { WriteModel("int/ref.pvx", {}, {"art\\Hull_Texture_SHARE", "art\\steel"}); }

    static constexpr const char* s_File = "gen/art/Hull_Texture_SHARE.qsh";
};

TEST_F(SharedTextures, WithoutABurnerTheMergeEndsByABareText) {
    try {
        Merge({});
        ADD_FAILURE() << "there is no burner";
    } catch (const char* pText) {
        EXPECT_EQ(pText, TellUnable("burn shared texture", s_File, " pattern"));
    }
    EXPECT_EQ(m_Text, "");
    EXPECT_TRUE(AreServicesUp());
    EXPECT_EQ(m_Server.GetOpened("gen/art/tank.pvx"), "") << "the merged model isn't the merge's to open";
    EXPECT_EQ(m_Server.Load().changes.at(0).description, "PVX Export Changes");
    AniMergeShutdown(0);
    EXPECT_THAT(m_Server.Read("int/ref.log"), HasSubstr("Failed to locate the burner module"));

    const ModelServices services;
    const std::unique_ptr<Shader> pShader = ra::ReadSharedShaderGeneric(*MakeReadStream(m_Server.Read(s_File)));
    EXPECT_STREQ(pShader->GetName(), "art\\Hull_Texture_SHARE");
    ASSERT_TRUE(pShader->GetChannelTexture(CN_Diffuse));
    EXPECT_EQ(pShader->GetChannelTexture(CN_Diffuse)->GetWidth(), 4u);
    const std::string merged = m_Server.Read("gen/art/tank.pvx");
    EXPECT_THAT(merged, HasSubstr("SSHR"));
    EXPECT_THAT(merged, HasSubstr("art\\steel"));
    EXPECT_EQ(merged.find("TXTR"), merged.rfind("TXTR")) << "the shared texture isn't the model's own";
}

TEST_F(SharedTextures, AFileThatCannotBeOpenedIsAnException) {
    SubmitOfOther(s_File);
    EXPECT_FALSE(Merge({}));
    EXPECT_EQ(m_Text, TellUnable("open shared texture", s_File));
    EXPECT_TRUE(AreServicesDown());
    EXPECT_TRUE(m_Server.Has("gen/art/tank.pvx")) << "what was done before stays done";
    EXPECT_EQ(m_Server.Read(s_File), "theirs");
    EXPECT_TRUE(m_Server.Load().changes.empty()) << "the changelist that was made for it is gone";
}

// A burner that has nothing to say but that it is done, and what it couldn't do.
TEST_F(MergeFixture, EachIsWrittenAndBurntOnceWithItsPattern) {
    WriteModel("int/ref.pvx", {}, {"art\\a_texture_share", "art\\steel", "art\\b_texture_share"});
    const Bytes picture = MakeTga(4, 4, 32);
    for (const char* pName : {"a_texture_share", "a_texture_share_default_primary", "steel", "steel_default_primary"})
        m_Server.Write(std::string("src/art/") + pName + ".tga", {picture.begin(), picture.end()});
    std::filesystem::copy_file(Process::GetExecutableFolder() + "burner-standin",
                               m_Server.Native("Burner/BurnerImp.exe"));
    setenv("PVX_PIPES", m_Server.Native("pipes").c_str(), 1);
    setenv("BURNER_STANDIN",
           "connect; read; send 42545242 01000000; read; send 53455242 00000000 01 01000000 02000000 02000000 6e6f;",
           1);
    EXPECT_TRUE(Merge({})) << "only that each burn came to a result counts";
    for (const char* pName : {"PVX_PIPES", "BURNER_STANDIN"})
        unsetenv(pName);
    EXPECT_EQ(m_Text, "");
    EXPECT_TRUE(AreServicesDown());
    const std::string log = m_Server.Read("int/ref.log");
    for (const char* pName : {"a_texture_share_default.otp", "a_texture_share.qsh", "b_texture_share.qsh"}) {
        EXPECT_EQ(m_Server.GetOpened(std::string("gen/art/") + pName), "add 1") << pName;
        EXPECT_THAT(log, HasSubstr("BURNER -- '" + At("gen") + "\\art\\" + pName + "': no"));
    }
    EXPECT_FALSE(m_Server.Has("gen/art/steel.qsh") || m_Server.Has("gen/art/steel_default.otp"));
    EXPECT_FALSE(m_Server.Has("gen/art/b_texture_share_default.otp"));
}

class MergeBurn : public MergeFixture {
protected:
    MergeBurn() { Pipeline::Initialize(At("int/ref.pvx").c_str()); }

    bool Open(const std::string& name) { return MergeBurnOpenFile(m_Changelist, At(name).c_str()); }

    int32_t m_Changelist = 99;
};

TEST_F(MergeBurn, FilesAreOpenedInTheToolsChangelistOrStayInTheirs) {
    for (const char* pName : {"gen/old.qsh", "gen/mine.qsh"})
        m_Server.Submit(pName, "old");
    m_Server.SubmitByOther("gen/old.qsh", "newer");
    const int mine = m_Server.MakeChange("my own");
    m_Server.Open("gen/mine.qsh", mine);
    EXPECT_TRUE(Open("gen/mine.qsh"));
    EXPECT_EQ(m_Server.GetOpened("gen/mine.qsh"), "edit " + std::to_string(mine));
    EXPECT_EQ(m_Server.Load().changes.size(), 1u) << "the empty one is gone again";

    EXPECT_TRUE(Open("gen/old.qsh"));
    EXPECT_EQ(m_Server.GetOpened("gen/old.qsh"), "edit " + std::to_string(m_Changelist));
    EXPECT_EQ(m_Server.Read("gen/old.qsh"), "newer");
    EXPECT_TRUE(Open("gen/old.qsh")) << "it is open already";
}

TEST_F(MergeBurn, FailuresAreFalse) {
    m_Server.Say("changes", "exit: 0\n");
    m_Server.Say("change", "error: no\nexit: 1\n");
    EXPECT_FALSE(Open("gen/x.qsh"));
    EXPECT_EQ(m_Changelist, 0);
    EXPECT_THROW(MergeBurnOpenFile(m_Changelist, nullptr), std::runtime_error);
    Pipeline::Shutdown();
    WriteIni("");
    Pipeline::Initialize(At("int/ref.pvx").c_str());
    EXPECT_FALSE(Open("gen/x.qsh")) << "there is no port";
    EXPECT_FALSE(MergeBurnFile(At("gen/x.qsh").c_str(), 0)) << "there is no burner's path";
}

} // namespace
