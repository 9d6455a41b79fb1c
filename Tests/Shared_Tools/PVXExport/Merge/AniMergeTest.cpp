#include "Tests/Shared_Tools/PVXExport/Merge/MergeFixture.h"

#include "Shared/Cross/RenderAnim/Anim.h"
#include "Shared/Cross/RenderAnim/AnimListNode.h"

using testing::HasSubstr;

namespace {

constexpr AniMergeFlags s_ModelOnly{.exportModel = true, .exportTextures = false};
constexpr AniMergeFlags s_TexturesOnly{.exportModel = false, .exportTextures = true};
constexpr AniMergeFlags s_Nothing{.exportModel = false, .exportTextures = false};
constexpr const char* s_NotBuilt = "Merge: Unable to build the intermediate model (Data Intermediate)!\n";

class AniMergeTest : public MergeFixture {
protected:
    std::string ReadLog() const { return m_Server.Read("int/ref.log"); }
};

TEST_F(AniMergeTest, EachFileAddsItsFirstAnimation) {
    const std::string die = MakeAnimChunk({"hip", "knee"}, "die");
    m_Server.Write("int/die.pvx", MakeModelFile(die + MakeAnimChunk({"hip"}, "fall")));
    m_Server.Write("int/empty.pvx", MakeModelFile(""));
    // No merge looks at an animation file's skeleton.
    m_Server.Write("int/damaged.pvx", MakeModelFile(ChunkBytes::Data("SKEL", "????", 2) + die));
    const std::vector<std::string> files = {"int\\run.pvx", "int\\empty.pvx", "int\\die.pvx", "int\\damaged.pvx"};
    ASSERT_TRUE(Merge(files));
    EXPECT_EQ(m_Text, "");
    EXPECT_TRUE(AreServicesDown());
    EXPECT_THAT(ReadLog(), HasSubstr("closed without errors"));
    EXPECT_THAT(ReadLog(), HasSubstr("MERGE -- 'int\\damaged.pvx': its bones can't be held against the model's: "));
    EXPECT_TRUE(ra::IsGenericLoad());
    const std::string bytes = m_Server.Read("gen/art/tank.pvx");
    ASSERT_TRUE(Merge(files));
    EXPECT_EQ(m_Server.Read("gen/art/tank.pvx"), bytes);

    const ModelServices services;
    const std::unique_ptr<RenderModel> pModel = ReadMerged();
    ASSERT_TRUE(pModel && pModel->GetAnimList() && pModel->GetSkeleton());
    EXPECT_STREQ(pModel->GetName(), "tank");
    EXPECT_EQ(pModel->GetMeshGroup()->GetMeshCount(), 1u);
    ASSERT_EQ(pModel->GetAnimList()->GetCount(), 3u);
    const auto getAnim = [&](uint32_t i) -> const Anim& {
        return *pModel->GetAnimList()->GetNode(i)->GetAnim().GetData();
    };
    EXPECT_STREQ(getAnim(0).GetName(), "run");
    EXPECT_STREQ(getAnim(1).GetName(), "die");
    ASSERT_EQ(getAnim(0).GetBoneCount(), 2u);
    ASSERT_TRUE(getAnim(0).GetBone(0).pPosition);
    EXPECT_EQ(getAnim(0).GetBone(0).pPosition->GetKey(1).value.x, 5);
}

TEST_F(AniMergeTest, StartThatFailsSaysNothingAndLeavesUpWhatIsUp) {
    const auto fails = [&](const std::string& model) {
        return !AniMerge(MakeArguments({}, model), {}) && m_Text.empty() && ProcessLog::IsOpen() &&
               !Inv::IsInitialized();
    };
    m_Server.Write("elsewhere/ref.pvx", "");
    EXPECT_TRUE(fails("elsewhere\\ref.pvx"));
    EXPECT_TRUE(FilePath::HasAlias("DATA:x") && !FilePath::HasAlias("GENERIC:x"));
    AniMergeShutdown(0);

    for (const char* pGlobal : {"", "[Global]\r\nToolsData=NotThere\r\n"}) {
        WriteIni("", pGlobal);
        EXPECT_TRUE(fails(s_Model)) << pGlobal;
        EXPECT_TRUE(Pipeline::IsInitialized() && FilePath::HasAlias("TOOL:x") && !FilePath::HasAlias("DATA:x"));
        AniMergeShutdown(0);
    }

    m_Server.Write("pipeline.ini", "");
    EXPECT_TRUE(fails(s_Model));
    EXPECT_FALSE(Pipeline::IsInitialized());
}

TEST_F(AniMergeTest, AModelThatCannotBeLoadedIsNamed) {
    m_Server.Write("int/bad.pvx", "no model at all, but long enough for a header");
    for (const std::string name : {"none", "bad"}) {
        m_Text.clear();
        EXPECT_FALSE(AniMerge(MakeArguments({}, "int\\" + name + ".pvx"), {}));
        EXPECT_EQ(m_Text, "Merge: Unable to load file 'int\\" + name + ".pvx'!\n");
        EXPECT_TRUE(AreServicesUp());
        AniMergeShutdown(0);
        EXPECT_THAT(m_Server.Read("int/" + name + ".log"), HasSubstr("RENDER ANIM -- TOOL:int\\" + name + ".pvx: "));
    }
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
    // A merged file that lies in no project has none for its shared textures.
    AniMergeArguments arguments = MakeArguments({});
    arguments.mergeFile = "elsewhere\\tank.pvx";
    EXPECT_FALSE(AniMerge(arguments, {}));
    EXPECT_THAT(m_Text, HasSubstr("projectName"));
    EXPECT_TRUE(AreServicesDown());
    EXPECT_TRUE(m_Server.Has("elsewhere/tank.pvx"));
    EXPECT_THAT(ReadLog(), testing::Not(HasSubstr("without errors")));
}

TEST_F(AniMergeTest, TheLogLiesAtTheFirstPoint) {
    m_Server.Write("int/v1.5/ref.pvx", m_Server.Read("int/ref.pvx"));
    EXPECT_TRUE(AniMerge(MakeArguments({}, "int\\v1.5\\ref.pvx"), s_ModelOnly));
    EXPECT_TRUE(m_Server.Has("int/v1.log"));
    EXPECT_FALSE(AniMerge(MakeArguments({}, "Z:\\a folder\\model without a point"), {}));
    EXPECT_THAT(m_Text, HasSubstr("pExt"));
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
    m_Server.Write("int/damaged.pvx", MakeAnimFile({"hip"}).substr(0, 200));
    for (const std::string name : {"int\\missing.pvx", "int\\damaged.pvx"}) {
        EXPECT_FALSE(Merge({name, "int\\run.pvx"})) << name;
        EXPECT_EQ(m_Text, s_NotBuilt) << name;
        EXPECT_TRUE(AreServicesUp());
        AniMergeShutdown(0);
        EXPECT_THAT(ReadLog(), HasSubstr("RENDER ANIM -- TOOL:" + name + ": ")) << name;
        EXPECT_FALSE(m_Server.Has("gen/art/tank.pvx"));
    }
}

TEST_F(AniMergeTest, AModelWithoutASkeletonTakesNoBones) {
    WriteModel("int/ref.pvx", {}, {});
    EXPECT_FALSE(Merge({"int\\run.pvx"}));
    EXPECT_EQ(m_Text,
              std::string("Merge: Trying to merge animations but ref model doesn't have a skeleton") + s_NotBuilt);
    AniMergeShutdown(0);
    m_Server.Write("int/still.pvx", MakeAnimFile({}));
    EXPECT_TRUE(Merge({"int\\still.pvx"}));
    EXPECT_EQ(m_Text, "");
}

TEST_F(AniMergeTest, AMergedFileThatCannotBeWrittenIsNamed) {
    SubmitOfOther("gen/art/tank.pvx");
    EXPECT_FALSE(Merge({}));
    EXPECT_EQ(m_Text, "Merge: Unable to save the model 'tank'\n.  Please make sure no one else has it checked-out in "
                      "P4 (Data Generic / Data Final)!\n");
    EXPECT_TRUE(AreServicesUp());
    EXPECT_EQ(m_Server.Read("gen/art/tank.pvx"), "theirs");
    AniMergeShutdown(0);
    EXPECT_THAT(ReadLog(), HasSubstr("RENDER ANIM -- TOOL:gen\\art\\tank.pvx: "));
}

} // namespace
