#include "Tests/Shared/Cross/Pipeline/ProjectTree.h"
#include "Tests/Shared_Tools/PVXExport/Commands/CallCommand.h"

namespace {

constexpr const char* s_Intermediate = "ombl_pipeline_sourcetointermediate";
constexpr const char* s_Generic = "ombl_pipeline_sourcetogeneric";
constexpr const char* s_Final = "ombl_pipeline_sourcetofinal";

class PipelineCommands : public ProjectTree {
protected:
    static Value Map(const char* pCommand, const std::string& path) { return Call(pCommand, {Value(path)}); }
    static std::string ErrorOf(const char* pCommand, const std::vector<Value>& arguments) {
        try {
            return "no error, but " + Call(pCommand, arguments).Print();
        } catch (const ScriptError& error) {
            return error.GetText();
        }
    }
    void WriteProjects() const {
        Write("proj\\pipeline.ini", Lines(Project("Foo", "Art", "Parent=base\n") + Project("base", "Base")));
    }
};

TEST_F(PipelineCommands, ASourceFileHasItsPlaceInTheOtherTrees) {
    WriteProjects();
    const std::string source = Path("proj\\Art\\src\\ebps\\Tank.max");
    EXPECT_EQ(Map(s_Intermediate, source), Value(Path("proj\\Art\\int\\ebps\\Tank.max")));
    EXPECT_EQ(Map(s_Generic, source), Value(Path("proj\\Art\\gen\\ebps\\Tank.max")));
    EXPECT_EQ(Map(s_Final, source), Value(Path("proj\\Art\\Data\\ebps\\Tank.max")));
    EXPECT_EQ(Map(s_Final, Path("proj\\base\\SRC\\x.max")), Value(Path("proj\\Base\\Data\\x.max"))) << "by its project";
    EXPECT_EQ(Map(s_Final, Path("proj\\Art\\src")), Value(Path("proj\\Art\\Data"))) << "the folder itself";
    EXPECT_EQ(Map(s_Final, Path("proj\\Art\\src\\")), Value(Path("proj\\Art\\Data\\")));
    EXPECT_EQ(Map(s_Generic, Path("proj/Art/int/../src//.\\Tank.max")), Value(Path("proj\\Art\\gen\\Tank.max")));
    EXPECT_FALSE(Pipeline::IsInitialized()) << "looked for anew in each call";
}

TEST_F(PipelineCommands, WhatBelongsToNoProjectIsUndefined) {
    EXPECT_EQ(Map(s_Final, Path("proj\\Art\\src\\x.max")), Value()) << "no pipeline.ini";
    WriteProjects();
    for (const std::string& path : {Path("proj\\Art\\src2\\x.max"), Path("proj\\Art\\gen\\x.max"), std::string(),
                                    std::string(1000000, '\\'), "Z:" + std::string(1000000, 'x')})
        EXPECT_EQ(Map(s_Final, path), Value()) << path.substr(0, 200);
    Write("proj\\pipeline.ini", Lines("[open\n"));
    EXPECT_EQ(Map(s_Final, Path("proj\\Art\\src\\x.max")), Value()) << "a damaged pipeline.ini";
    EXPECT_FALSE(Pipeline::IsInitialized());
}

TEST_F(PipelineCommands, ArgumentErrorsNameTheCommand) {
    const std::pair<const char*, const char*> names[] = {
        {s_Intermediate, s_Intermediate}, {s_Generic, s_Generic}, {s_Final, "ombl_pipeline_sourcetodestination"}};
    for (const auto& [pCommand, pNameInCount] : names) {
        EXPECT_EQ(ErrorOf(pCommand, {Value("a"), Value("b")}),
                  std::string("Argument count error: ") + pNameInCount + " wanted 1, got 2");
        EXPECT_EQ(ErrorOf(pCommand, {Value(3)}),
                  std::string("Type error: ") + pCommand + " source_filename requires String, got: 3");
    }
}

} // namespace
