#include "Tests/Shared_Tools/PVXExport/Merge/MergeFixture.h"

#include "Shared/Cross/RenderAnim/Anim.h"
#include "Shared/Cross/RenderAnim/AnimListNode.h"

using testing::HasSubstr;

namespace {

constexpr AniMergeFlags s_ModelOnly{.exportModel = true, .exportTextures = false};
constexpr AniMergeFlags s_TexturesOnly{.exportModel = false, .exportTextures = true};
constexpr AniMergeFlags s_Nothing{.exportModel = false, .exportTextures = false};

class AniMergeTest : public MergeFixture {
protected:
    std::string ReadLog() const { return m_Server.Read("int/ref.log"); }
};

TEST_F(AniMergeTest, AnimationsAreMergedInTheirOrder) {
    m_Server.Write("int/die.pvx", MakeAnimFile({"hip", "knee"}));
    ASSERT_TRUE(Merge({"int\\run.pvx", "int\\die.pvx"}));
    EXPECT_EQ(m_Text, "");
    EXPECT_TRUE(AreServicesDown());
    EXPECT_THAT(ReadLog(), HasSubstr("closed without errors"));
    EXPECT_TRUE(ra::IsGenericLoad());

    const ModelServices services;
    const std::unique_ptr<RenderModel> pModel = ReadMerged();
    ASSERT_TRUE(pModel && pModel->GetAnimList() && pModel->GetSkeleton());
    EXPECT_STREQ(pModel->GetName(), "tank");
    ASSERT_EQ(pModel->GetAnimList()->GetCount(), 2u);
    const Anim& run = *pModel->GetAnimList()->GetNode(0)->GetAnim().GetData();
    ASSERT_EQ(run.GetBoneCount(), 2u);
    ASSERT_TRUE(run.GetBone(0).pPosition);
    EXPECT_EQ(run.GetBone(0).pPosition->GetKey(1).value.x, 5);
    EXPECT_EQ(pModel->GetMeshGroup()->GetMeshCount(), 1u);
}

TEST_F(AniMergeTest, StartThatFailsSaysNothingAndLeavesUpWhatIsUp) {
    const std::string ini = m_Server.Read("pipeline.ini");
    const auto fails = [&] { return !Merge({}) && m_Text.empty() && ProcessLog::IsOpen() && !Inv::IsInitialized(); };

    m_Server.Write("pipeline.ini", "");
    EXPECT_TRUE(fails());
    EXPECT_FALSE(Pipeline::IsInitialized());
    AniMergeShutdown(0);

    for (const char* pGlobal : {"", "[Global]\r\nToolsData=NotThere\r\n"}) {
        WriteIni("", pGlobal);
        EXPECT_TRUE(fails()) << pGlobal;
        EXPECT_TRUE(Pipeline::IsInitialized() && FilePath::HasAlias("TOOL:x") && !FilePath::HasAlias("DATA:x"));
        AniMergeShutdown(0);
    }

    m_Server.Write("pipeline.ini", ini);
    AniMergeArguments arguments = MakeArguments({});
    arguments.modelFile = "elsewhere\\ref.pvx";
    m_Server.Write("elsewhere/ref.pvx", "");
    EXPECT_FALSE(AniMerge(arguments, {}));
    EXPECT_EQ(m_Text, "");
    EXPECT_TRUE(FilePath::HasAlias("DATA:x") && !FilePath::HasAlias("GENERIC:x"));
}

TEST_F(AniMergeTest, TwoArgumentsHaveStartedEverything) {
    AniMergeArguments arguments = MakeArguments({});
    arguments.count = 2;
    EXPECT_FALSE(AniMerge(arguments, {}));
    EXPECT_EQ(m_Text, "Ani-merge : usage 'Ani-merge <merge file> <model file> <anim file(s)>* '\n");
    EXPECT_TRUE(AreServicesUp());
}

TEST_F(AniMergeTest, AModelThatCannotBeLoadedIsNamed) {
    AniMergeArguments arguments = MakeArguments({});
    arguments.modelFile = "int\\none.pvx";
    EXPECT_FALSE(AniMerge(arguments, {}));
    EXPECT_EQ(m_Text, "Merge: Unable to load file '" + arguments.modelFile + "'!\n");
    EXPECT_TRUE(AreServicesUp());
    AniMergeShutdown(0);
    EXPECT_THAT(m_Server.Read("int/none.log"),
                HasSubstr("RENDER ANIM -- TOOL:" + arguments.modelFile + ": Unable to open file!"));

    m_Server.Write("int/ref.pvx", "no model at all, but long enough for a header");
    EXPECT_FALSE(Merge({}));
    EXPECT_THAT(m_Text, HasSubstr("Unable to load file"));
}

TEST_F(AniMergeTest, WhatAFailureLeftUpIsMetByTheNext) {
    EXPECT_FALSE(Merge({"int\\none.pvx"}));
    EXPECT_TRUE(AreServicesUp());
    EXPECT_FALSE(Merge({}));
    EXPECT_THAT(m_Text, HasSubstr("s_instance == NULL"));
    EXPECT_TRUE(AreServicesDown());
    EXPECT_TRUE(Merge({}));
    EXPECT_TRUE(AreServicesDown());
}

TEST_F(AniMergeTest, AnExceptionTakesTheServicesDown) {
    AniMergeArguments arguments = MakeArguments({});
    arguments.modelFile = "Z:\\a folder\\model without a point";
    EXPECT_FALSE(AniMerge(arguments, {}));
    EXPECT_THAT(m_Text, HasSubstr("pExt"));
    EXPECT_TRUE(AreServicesDown());

    // A merged file that lies in no project has none for its shared textures.
    arguments = MakeArguments({});
    arguments.mergeFile = "elsewhere\\tank.pvx";
    m_Text.clear();
    EXPECT_FALSE(AniMerge(arguments, {}));
    EXPECT_THAT(m_Text, HasSubstr("projectName"));
    EXPECT_TRUE(AreServicesDown());
    EXPECT_TRUE(m_Server.Has("elsewhere/tank.pvx"));
    EXPECT_THAT(ReadLog(), testing::Not(HasSubstr("without errors")));
}

TEST_F(AniMergeTest, TheLogLiesAtTheFirstPoint) {
    m_Server.Write("int/v1.5/ref.pvx", m_Server.Read("int/ref.pvx"));
    AniMergeArguments arguments = MakeArguments({});
    arguments.modelFile = "int\\v1.5\\ref.pvx";
    EXPECT_TRUE(AniMerge(arguments, s_ModelOnly));
    EXPECT_TRUE(m_Server.Has("int/v1.log"));
}

TEST_F(AniMergeTest, FlagsLeaveOutModelAndTextures) {
    WriteModel("int/ref.pvx", {"hip"}, {"art\\Texture_Share", "art\\steel"});
    EXPECT_TRUE(Merge({"int\\none.pvx"}, s_Nothing));
    EXPECT_TRUE(m_Server.Has("gen/art"));
    EXPECT_FALSE(m_Server.Has("gen/art/tank.pvx"));

    EXPECT_TRUE(Merge({}, s_ModelOnly));
    EXPECT_FALSE(m_Server.Has("gen/art/Texture_Share.qsh"));
    EXPECT_THAT(m_Server.Read("gen/art/tank.pvx"), HasSubstr("SSHR"));

    OSFile::Delete(At("gen/art/tank.pvx").c_str());
    EXPECT_ANY_THROW(Merge({"int\\none.pvx"}, s_TexturesOnly)) << "there is no burner";
    EXPECT_TRUE(m_Server.Has("gen/art/Texture_Share.qsh"));
    EXPECT_FALSE(m_Server.Has("gen/art/tank.pvx"));
}

TEST_F(AniMergeTest, AFileThatCannotBeMergedEndsTheMerge) {
    const std::pair<const char*, std::string> files[] = {
        {"missing", ""},
        {"damaged", MakeAnimFile({"hip"}).substr(0, 200)},
        {"no model", "no model at all, but long enough for a header"},
    };
    for (const auto& [pName, bytes] : files) {
        const std::string name = std::string("int\\") + pName + ".pvx";
        if (!bytes.empty())
            m_Server.Write(std::string("int/") + pName + ".pvx", bytes);
        EXPECT_FALSE(Merge({name, "int\\run.pvx"})) << pName;
        EXPECT_EQ(m_Text, "Merge: Unable to build the intermediate model (Data Intermediate)!\n") << pName;
        EXPECT_TRUE(AreServicesUp());
        AniMergeShutdown(0);
        EXPECT_THAT(ReadLog(), HasSubstr("RENDER ANIM -- TOOL:" + name + ": ")) << pName;
        EXPECT_FALSE(m_Server.Has("gen/art/tank.pvx"));
    }
}

TEST_F(AniMergeTest, AModelWithoutASkeletonTakesNoBones) {
    WriteModel("int/ref.pvx", {}, {});
    EXPECT_FALSE(Merge({"int\\run.pvx"}));
    EXPECT_EQ(m_Text, "Merge: Trying to merge animations but ref model doesn't have a skeleton"
                      "Merge: Unable to build the intermediate model (Data Intermediate)!\n");
    AniMergeShutdown(0);
    m_Server.Write("int/still.pvx", MakeAnimFile({}));
    EXPECT_TRUE(Merge({"int\\still.pvx"}));
    EXPECT_EQ(m_Text, "");
}

TEST_F(AniMergeTest, AFileWithoutAnAnimationAddsNothing) {
    m_Server.Write("int/empty.pvx", MakeModelFile(""));
    m_Server.Write("int/two.pvx", MakeModelFile(MakeAnimChunk({"hip"}) + MakeAnimChunk({"hip"})));
    ASSERT_TRUE(Merge({"int\\empty.pvx", "int\\two.pvx"}));
    const ModelServices services;
    EXPECT_EQ(ReadMerged()->GetAnimList()->GetCount(), 1u) << "of each file the first animation alone";
}

TEST_F(AniMergeTest, AMergedFileThatCannotBeWrittenIsNamed) {
    // Read-only, as every file that one hasn't opened; this one can't be, since somebody else has it.
    m_Server.Submit("gen/art/tank.pvx", "old", true, "binary+l");
    m_Server.OpenByOther("gen/art/tank.pvx", true);
    EXPECT_FALSE(Merge({}));
    EXPECT_EQ(m_Text, "Merge: Unable to save the model 'tank'\n.  Please make sure no one else has it checked-out in "
                      "P4 (Data Generic / Data Final)!\n");
    EXPECT_TRUE(AreServicesUp());
    EXPECT_EQ(m_Server.Read("gen/art/tank.pvx"), "old");
    AniMergeShutdown(0);
    EXPECT_THAT(ReadLog(), HasSubstr("RENDER ANIM -- TOOL:gen\\art\\tank.pvx: "));
}

TEST_F(AniMergeTest, TheSameFilesGiveTheSameBytes) {
    ASSERT_TRUE(Merge({"int\\run.pvx"}));
    const std::string bytes = m_Server.Read("gen/art/tank.pvx");
    ASSERT_TRUE(Merge({"int\\run.pvx"}));
    EXPECT_EQ(m_Server.Read("gen/art/tank.pvx"), bytes);
}

} // namespace
