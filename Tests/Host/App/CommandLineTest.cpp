#include "Host/App/CommandLine.h"

#include <gmock/gmock.h>

#include <sstream>

namespace {

using Words = std::vector<std::string>;

Words Split(const std::string& text) {
    std::istringstream in(text);
    Words words;
    for (std::string word; in >> word;)
        words.push_back(word);
    return words;
}

template <class Arguments>
Arguments Parse(const std::string& text) {
    const auto result = ParseCommandLine(Split(text));
    const auto* pLine = std::get_if<CommandLine>(&result);
    if (!pLine || !std::holds_alternative<Arguments>(pLine->command))
        throw std::runtime_error("refused: " + text);
    return std::get<Arguments>(pLine->command);
}

TEST(CommandLine, ExportTakesItsOptions) {
    const auto plain = Parse<ExportArguments>("export a.glb b.pvx");
    EXPECT_EQ(plain.scene, "a.glb");
    EXPECT_EQ(plain.output, "b.pvx");
    EXPECT_EQ(plain.framesPerSecond, 30);
    EXPECT_TRUE(plain.clip.empty());
    EXPECT_FALSE(plain.silent || plain.noMeshes || plain.noAnimation || plain.xrefAsLocal || plain.ask ||
                 plain.limitInfluences);

    const auto full = Parse<ExportArguments>("export --no-meshes a.glb --clip Walk b.pvx --fps 25 --xref-as-local "
                                             "--limit-influences --ask");
    EXPECT_TRUE(full.noMeshes && full.xrefAsLocal && full.limitInfluences && full.ask);
    EXPECT_EQ(full.clip, "Walk");
    EXPECT_EQ(full.framesPerSecond, 25);
}

TEST(CommandLine, OtherCommands) {
    const auto merge = Parse<MergeArguments>("merge m.pvx ref.pvx run.pvx die.pvx --no-textures");
    EXPECT_THAT(merge.animations, testing::ElementsAre("run.pvx", "die.pvx"));
    EXPECT_TRUE(merge.noTextures && !merge.noModel);
    EXPECT_EQ(Parse<BurnArguments>("burn m.pvx").file, "m.pvx");
    EXPECT_EQ(Parse<ScriptArguments>("script -").file, "-");
    Parse<CommandsArguments>("commands --verbose");
    const auto call = Parse<CallArguments>("call ombl_x a.pvx true #(1,2)");
    EXPECT_EQ(call.command, "ombl_x");
    EXPECT_THAT(call.arguments, testing::ElementsAre("a.pvx", "true", "#(1,2)"));
    EXPECT_THAT(Parse<CallArguments>("call ombl_x -- -3 --word").arguments, testing::ElementsAre("-3", "--word"));
}

TEST(CommandLine, RefusesInOneLineThatNamesTheFault) {
    const std::pair<const char*, const char*> refused[] = {
        {"", "a command is missing"},
        {"exprt a.glb b.pvx", "exprt"},
        {"export", "SCENE"},
        {"export a.glb", "OUT"},
        {"export a.glb b.pvx c.pvx", "c.pvx"},
        {"export a.glb b.pvx --no-such-flag", "--no-such-flag"},
        {"export a.glb b.pvx --fps", "--fps"},
        {"export a.glb b.pvx --fps 0", "--fps"},
        {"export a.glb b.pvx --fps 4801", "--fps"},
        {"export a.glb b.pvx --fps fast", "--fps"},
        {"export a.glb b.pvx --fps 29.97", "--fps"},
        {"export a.glb b.pvx --silent --no-meshes", "--silent"},
        {"export a.glb b.pvx --silent --no-animation", "--silent"},
        {"export a.glb b.pvx --silent --xref-as-local", "--silent"},
        {"export a.glb b.pvx --ask --silent", "--silent"},
        {"export a.glb b.pvx --no-meshes --no-animation", "nothing to export"},
        {"export a.glb b.pvx --quiet --verbose", "--quiet"},
        {"merge m.pvx", "MODEL"},
        {"burn", "FILE"},
        {"call", "COMMAND"},
        {"script", "FILE"},
        {"commands now", "now"},
    };
    for (const auto& [text, named] : refused) {
        const auto result = ParseCommandLine(Split(text));
        const auto* pEnd = std::get_if<CommandLineEnd>(&result);
        ASSERT_TRUE(pEnd) << text;
        EXPECT_EQ(pEnd->status, 2) << text;
        EXPECT_THAT(pEnd->text, testing::HasSubstr(named)) << text;
        EXPECT_THAT(pEnd->text, testing::Not(testing::HasSubstr("\n"))) << text;
    }
}

TEST(CommandLine, HelpIsForTheCommandThatAsksForIt) {
    for (const char* pText : {"--help", "export --help", "export -h", "call --help"}) {
        const auto result = ParseCommandLine(Split(pText));
        ASSERT_TRUE(std::holds_alternative<CommandLineEnd>(result)) << pText;
        EXPECT_EQ(std::get<CommandLineEnd>(result).status, 0);
    }
    EXPECT_THAT(std::get<CommandLineEnd>(ParseCommandLine({"export", "--help"})).text,
                testing::HasSubstr("--limit-influences"));
}

} // namespace
