#include "Tests/Shared_Tools/PVXExport/Commands/CallCommand.h"
#include "Tests/Shared_Tools/PVXExport/Merge/MergeFixture.h"

namespace {

class MergeCommands : public MergeFixture {
protected:
    uint32_t CountMergedAnims() const {
        const ModelServices services;
        return ReadMerged()->GetAnimList()->GetCount();
    }
};

TEST_F(MergeCommands, FlagsAreKept) {
    EXPECT_EQ(Call("ombl_animergeFlags", {Value(true)}), Value(false));
    EXPECT_EQ(m_Text, "Ani-merge options : usage 'Ani-merge <export model flag> <export textures flag>'\n");
    EXPECT_TRUE(GetAniMergeFlags().exportModel && GetAniMergeFlags().exportTextures);
    EXPECT_EQ(Call("ombl_animergeFlags", {Value(false), Value(true), Value(7)}), Value(true));
    EXPECT_TRUE(!GetAniMergeFlags().exportModel && GetAniMergeFlags().exportTextures);
    EXPECT_EQ(Call("ombl_animerge", {Value(s_Merged), Value(s_Model), Value("int\\none.pvx")}), Value(true));
    EXPECT_FALSE(m_Server.Has("gen/art/tank.pvx"));
    EXPECT_THROW(Call("ombl_animergeFlags", {Value(1), Value(true)}), ScriptError);
    EXPECT_FALSE(GetAniMergeFlags().exportModel);
}

TEST_F(MergeCommands, AnimationsStandInAnArrayOrOneByOne) {
    const Value run("int\\run.pvx");
    EXPECT_EQ(Call("ombl_animerge", {Value(s_Merged), Value(s_Model), run, run}), Value(true));
    EXPECT_EQ(CountMergedAnims(), 2u);
    EXPECT_EQ(Call("ombl_animerge", {Value(s_Merged), Value(s_Model), Value(Value::Array{run}), run}), Value(true));
    EXPECT_EQ(CountMergedAnims(), 1u) << "behind an array nothing counts";
    EXPECT_EQ(Call("ombl_animerge", {Value(s_Merged), Value(s_Model), Value(Value::Array{})}), Value(true));
    EXPECT_EQ(CountMergedAnims(), 0u);
}

TEST_F(MergeCommands, ErrorsOfTheScriptComeAheadOfTheStart) {
    EXPECT_THROW(Call("ombl_animerge", {Value(s_Merged), Value(s_Model), Value(3)}), ScriptError);
    EXPECT_TRUE(AreServicesDown());
    EXPECT_EQ(Call("ombl_animerge", {Value(s_Merged)}), Value(false));
    EXPECT_EQ(Call("ombl_animerge", {}), Value(false));
    EXPECT_TRUE(AreServicesDown());
}

TEST_F(MergeCommands, TheResetTakesDownWhatAFailureLeftUp) {
    EXPECT_EQ(Call("ombl_animerge", {Value(s_Merged), Value(s_Model)}), Value(false));
    EXPECT_TRUE(AreServicesUp());
    EXPECT_EQ(Call("ombl_burner_reset", {}), Value(true));
    EXPECT_TRUE(!Inv::IsInitialized() && !Pipeline::IsInitialized() && !FilePath::HasAlias("TOOL:x"));
    EXPECT_TRUE(ProcessLog::IsOpen());
    EXPECT_EQ(Call("ombl_animerge", {Value(s_Merged), Value(s_Model), Value("int\\run.pvx")}), Value(true));
    EXPECT_TRUE(AreServicesDown());
    EXPECT_EQ(m_Server.Read("int/ref.log").find("missing alias"), std::string::npos);
}

} // namespace
