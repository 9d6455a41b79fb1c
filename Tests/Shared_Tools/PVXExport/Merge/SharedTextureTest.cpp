#include "Shared/Cross/RenderAnim/Files/SharedShaderFile.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/PC/Debug/Process.h"
#include "Shared_Tools/PVXExport/Merge/OmbrelSharedShader.h"
#include "Shared_Tools/PVXExport/Merge/mergeburn.h"
#include "Tests/Shared_Tools/PVXExport/Merge/MergeFixture.h"

using testing::HasSubstr;

namespace {

constexpr const char* s_CheckedOut =
    "Please make sure no one else has it checked-out in P4 (Data Generic / Data Final)!\n";

class SharedTextures : public MergeFixture {
protected:
    SharedTextures() { WriteModel("int/ref.pvx", {}, {"art\\Hull_Texture_SHARE", "art\\steel"}); }

    // What ended the merge past its guard; empty when nothing did.
    std::string MergeUntilText() {
        try {
            Merge({});
        } catch (const char* pText) {
            return pText;
        }
        return "";
    }
};

TEST_F(SharedTextures, WithoutABurnerTheMergeEndsByABareText) {
    EXPECT_EQ(MergeUntilText(), "Merge: Unable to burn shared texture '" + At("gen") + "\\art\\Hull_Texture_SHARE.qsh" +
                                    "' pattern in P4!  " + s_CheckedOut);
    EXPECT_EQ(m_Text, "");
    EXPECT_TRUE(AreServicesUp());
    EXPECT_EQ(m_Server.GetOpened("gen/art/tank.pvx"), "") << "the merged model isn't the merge's to open";
    EXPECT_EQ(m_Server.Load().changes.at(0).description, "PVX Export Changes");
    AniMergeShutdown(0);
    EXPECT_THAT(m_Server.Read("int/ref.log"), HasSubstr("Failed to locate the burner module"));

    const ModelServices services;
    const std::unique_ptr<Shader> pShader =
        ra::ReadSharedShaderGeneric(*MakeReadStream(m_Server.Read("gen/art/Hull_Texture_SHARE.qsh")));
    EXPECT_STREQ(pShader->GetName(), "art\\Hull_Texture_SHARE");
    ASSERT_TRUE(pShader->GetChannelTexture(CN_Diffuse));
    EXPECT_EQ(pShader->GetChannelTexture(CN_Diffuse)->GetWidth(), 4u);
    const std::string merged = m_Server.Read("gen/art/tank.pvx");
    EXPECT_THAT(merged, HasSubstr("SSHR"));
    EXPECT_THAT(merged, HasSubstr("art\\steel"));
    EXPECT_EQ(merged.find("TXTR"), merged.rfind("TXTR")) << "the shared texture isn't the model's own";
}

TEST_F(SharedTextures, AFileThatCannotBeOpenedIsAnException) {
    m_Server.Submit("gen/art/Hull_Texture_SHARE.qsh", "theirs", true, "binary+l");
    m_Server.OpenByOther("gen/art/Hull_Texture_SHARE.qsh", true);
    EXPECT_FALSE(Merge({}));
    EXPECT_EQ(m_Text, "Merge: Unable to open shared texture '" + At("gen") + "\\art\\Hull_Texture_SHARE.qsh" +
                          "' in P4!  " + s_CheckedOut);
    EXPECT_TRUE(AreServicesDown());
    EXPECT_TRUE(m_Server.Has("gen/art/tank.pvx")) << "what was done before stays done";
    EXPECT_EQ(m_Server.Read("gen/art/Hull_Texture_SHARE.qsh"), "theirs");
    EXPECT_TRUE(m_Server.Load().changes.empty()) << "the changelist that was made for it is gone";

    WriteIni("[burner]\r\nburnerPath=Burner\r\n");
    EXPECT_FALSE(Merge({}));
    EXPECT_THAT(m_Text, HasSubstr("Unable to open shared texture")) << "there is no port";
    OSFile::SetWritable(At("gen/art/Hull_Texture_SHARE.qsh").c_str(), true);
}

// With a burner that has nothing to say but that it is done.
class BurntTextures : public MergeFixture {
protected:
    BurntTextures() {
        std::filesystem::copy_file(Process::GetExecutableFolder() + "burner-standin",
                                   m_Server.Native("Burner/BurnerImp.exe"));
        setenv("PVX_PIPES", m_Server.Native("pipes").c_str(), 1);
        setenv("BURNER_STANDIN_LOG", m_Server.Native("burner.log").c_str(), 1);
    }
    ~BurntTextures() override {
        for (const char* pName : {"PVX_PIPES", "BURNER_STANDIN", "BURNER_STANDIN_LOG"})
            unsetenv(pName);
    }
    static void AnswerWith(const char* pResult) {
        setenv("BURNER_STANDIN", ("connect; read; send 42545242 01000000; read;" + std::string(pResult)).c_str(), 1);
    }
    static constexpr const char* s_Done = "send 53455242 01000000 01 00000000;";
    // Result 0, and the error "no".
    static constexpr const char* s_NotAll = "send 53455242 00000000 01 01000000 02000000 02000000 6e6f;";
};

TEST_F(BurntTextures, EachIsWrittenOnceWithItsPattern) {
    WriteModel("int/ref.pvx", {}, {"art\\a_texture_share", "art\\steel", "art\\b_texture_share"});
    const Bytes picture = MakeTga(4, 4, 32);
    for (const char* pName : {"a_texture_share", "a_texture_share_default_primary", "steel", "steel_default_primary"})
        m_Server.Write(std::string("src/art/") + pName + ".tga", {picture.begin(), picture.end()});
    AnswerWith(s_Done);
    EXPECT_TRUE(Merge({}));
    EXPECT_EQ(m_Text, "");
    EXPECT_TRUE(AreServicesDown());
    for (const char* pName : {"a_texture_share_default.otp", "a_texture_share.qsh", "b_texture_share.qsh"})
        EXPECT_EQ(m_Server.GetOpened(std::string("gen/art/") + pName), "add 1") << pName;
    EXPECT_FALSE(m_Server.Has("gen/art/steel.qsh") || m_Server.Has("gen/art/steel_default.otp"));
    EXPECT_FALSE(m_Server.Has("gen/art/b_texture_share_default.otp"));
}

TEST_F(BurntTextures, OnlyThatTheBurnCameToAResultCounts) {
    WriteModel("int/ref.pvx", {}, {"art\\a_texture_share"});
    AnswerWith(s_NotAll);
    EXPECT_TRUE(Merge({}));
    EXPECT_THAT(m_Server.Read("int/ref.log"), HasSubstr("BURNER -- '" + At("gen") + "\\art\\a_texture_share.qsh': no"));
}

class MergeBurn : public MergeFixture {
protected:
    MergeBurn() { Pipeline::Initialize(At("int/ref.pvx").c_str()); }

    int32_t m_Changelist = 99;
};

TEST_F(MergeBurn, FilesAreOpenedInTheToolsChangelistOrStayInTheirs) {
    m_Server.Submit("gen/old.qsh", "old");
    m_Server.SubmitByOther("gen/old.qsh", "newer");
    EXPECT_TRUE(MergeBurnOpenFile(m_Changelist, At("gen/old.qsh").c_str()));
    EXPECT_EQ(m_Server.GetOpened("gen/old.qsh"), "edit " + std::to_string(m_Changelist));
    EXPECT_EQ(m_Server.Read("gen/old.qsh"), "newer");
    EXPECT_TRUE(MergeBurnOpenFile(m_Changelist, At("gen/old.qsh").c_str())) << "it is open already";

    P4State state = m_Server.Load();
    state.opened.clear();
    state.changes.clear();
    state.Save();
    const int other = m_Server.MakeChange("my own");
    state = m_Server.Load();
    state.opened.push_back({"gen/old.qsh", "edit", other});
    state.Save();
    EXPECT_TRUE(MergeBurnOpenFile(m_Changelist, At("gen/old.qsh").c_str()));
    EXPECT_EQ(m_Server.GetOpened("gen/old.qsh"), "edit " + std::to_string(other));
    EXPECT_EQ(m_Server.Load().changes.size(), 1u) << "the empty one is gone again";
    OSFile::SetWritable(At("gen/old.qsh").c_str(), true);
}

TEST_F(MergeBurn, FailuresAreFalse) {
    m_Server.Say("changes", "exit: 0\n");
    m_Server.Say("change", "error: no\nexit: 1\n");
    EXPECT_FALSE(MergeBurnOpenFile(m_Changelist, At("gen/x.qsh").c_str()));
    EXPECT_EQ(m_Changelist, 0);
    EXPECT_FALSE(MergeBurnFile(At("gen/x.qsh").c_str(), 0)) << "there is no burner";
    Pipeline::Shutdown();
    WriteIni("");
    Pipeline::Initialize(At("int/ref.pvx").c_str());
    EXPECT_FALSE(MergeBurnOpenFile(m_Changelist, At("gen/x.qsh").c_str()));
    EXPECT_FALSE(MergeBurnFile(At("gen/x.qsh").c_str(), 0));
    EXPECT_THROW(MergeBurnOpenFile(m_Changelist, nullptr), std::runtime_error);
}

} // namespace
