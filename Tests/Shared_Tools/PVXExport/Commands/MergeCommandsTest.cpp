#include "Tests/Shared_Tools/PVXExport/Commands/CallCommand.h"
#include "Tests/Shared_Tools/PVXExport/Merge/MergeFixture.h"

namespace {

class MergeCommands : public MergeFixture {
protected:
    static Value CallMerge(const std::vector<Value>& furtherArguments) {
        std::vector<Value> arguments = {Value(s_Merged), Value(s_Model)};
        arguments.insert(arguments.end(), furtherArguments.begin(), furtherArguments.end());
        return Call("ombl_animerge", arguments);
    }
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
    EXPECT_EQ(CallMerge({Value("int\\none.pvx")}), Value(true));
    EXPECT_FALSE(m_Server.Has("gen/art/tank.pvx"));
    EXPECT_THROW(Call("ombl_animergeFlags", {Value(1), Value(true)}), ScriptError);
    EXPECT_TRUE(!GetAniMergeFlags().exportModel && GetAniMergeFlags().exportTextures);
}

TEST_F(MergeCommands, AnimationsStandInAnArrayOrOneByOne) {
    const Value run("int\\run.pvx");
    EXPECT_EQ(CallMerge({run, run}), Value(true));
    EXPECT_EQ(CountMergedAnims(), 2u);
    EXPECT_EQ(CallMerge({Value(Value::Array{run}), run}), Value(true));
    EXPECT_EQ(CountMergedAnims(), 1u) << "behind an array nothing counts";
    EXPECT_EQ(CallMerge({Value(Value::Array{})}), Value(true));
    EXPECT_EQ(CountMergedAnims(), 0u);
}

TEST_F(MergeCommands, TwoArgumentsStartEverythingAndTheResetTakesItDown) {
    EXPECT_THROW(CallMerge({Value(3)}), ScriptError);
    EXPECT_EQ(Call("ombl_animerge", {Value(s_Merged)}), Value(false));
    EXPECT_TRUE(AreServicesDown()) << "without the model's name there is nothing to start";
    m_Text.clear();
    EXPECT_EQ(CallMerge({}), Value(false));
    EXPECT_EQ(m_Text, "Ani-merge : usage 'Ani-merge <merge file> <model file> <anim file(s)>* '\n");
    EXPECT_TRUE(AreServicesUp());
    EXPECT_EQ(Call("ombl_burner_reset", {}), Value(true));
    EXPECT_TRUE(!Inv::IsInitialized() && !Pipeline::IsInitialized() && !FilePath::HasAlias("TOOL:x"));
    EXPECT_TRUE(ProcessLog::IsOpen());
    EXPECT_EQ(CallMerge({Value("int\\run.pvx")}), Value(true));
    EXPECT_TRUE(AreServicesDown());
    EXPECT_EQ(m_Server.Read("int/ref.log").find("missing alias"), std::string::npos);
}

} // namespace
