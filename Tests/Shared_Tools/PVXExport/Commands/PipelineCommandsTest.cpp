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
    // Looked for anew in each call, and nothing stays up.
    EXPECT_FALSE(Pipeline::IsInitialized());
    Write("proj\\pipeline.ini", Lines(Project("Foo", "art", "DataFinal=Q:\\Out\n")));
    EXPECT_EQ(Map(s_Final, source), Value(Path("proj\\art\\Data\\ebps\\Tank.max"))) << "the first of two keys counts";
}

TEST_F(PipelineCommands, PathsMayHaveDotsAndBothSlashes) {
    WriteProjects();
    const Value target(Path("proj\\Art\\gen\\Tank.max"));
    EXPECT_EQ(Map(s_Generic, Path("elsewhere\\..\\proj\\Art\\.\\src\\Tank.max")), target);
    EXPECT_EQ(Map(s_Generic, Path("proj/Art/int/../src//Tank.max")), target);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(Native("proj"));
    EXPECT_EQ(Map(s_Generic, "Art\\src\\Tank.max"), target);
    std::filesystem::current_path(before);
}

TEST_F(PipelineCommands, WhatBelongsToNoProjectIsUndefined) {
    EXPECT_EQ(Map(s_Final, Path("proj\\Art\\src\\x.max")), Value()) << "no pipeline.ini";
    WriteProjects();
    EXPECT_EQ(Map(s_Final, Path("proj\\Art\\src2\\x.max")), Value());
    EXPECT_EQ(Map(s_Final, Path("proj\\Art\\gen\\x.max")), Value()) << "in another tree";
    EXPECT_EQ(Map(s_Final, ""), Value());
    EXPECT_EQ(Map(s_Final, std::string(1000000, '\\')), Value());
    EXPECT_EQ(Map(s_Final, "Z:" + std::string(1000000, 'x')), Value());
    for (const std::string& broken : {Lines("[open\n"), Lines("[project:foo]\nDataSource=Art\\src\n"), std::string()}) {
        Write("proj\\pipeline.ini", broken);
        EXPECT_EQ(Map(s_Final, Path("proj\\Art\\src\\x.max")), Value()) << broken;
    }
    EXPECT_FALSE(Pipeline::IsInitialized());
}

TEST_F(PipelineCommands, ArgumentErrorsNameTheCommand) {
    EXPECT_EQ(ErrorOf(s_Intermediate, {}), "Argument count error: ombl_pipeline_sourcetointermediate wanted 1, got 0");
    EXPECT_EQ(ErrorOf(s_Generic, {Value("a"), Value("b")}),
              "Argument count error: ombl_pipeline_sourcetogeneric wanted 1, got 2");
    EXPECT_EQ(ErrorOf(s_Final, {}), "Argument count error: ombl_pipeline_sourcetodestination wanted 1, got 0");
    for (const char* pCommand : {s_Intermediate, s_Generic, s_Final}) {
        for (const Value& value : {Value(3), Value(), Value(Value::Array{Value("a")})})
            EXPECT_EQ(ErrorOf(pCommand, {value}), std::string("Type error: ") + pCommand +
                                                      " source_filename requires String, got: " + value.Print());
    }
    EXPECT_FALSE(Primitive::Find("ombl_pipeline_sourcetodestination")) << "a name in that error only";
}

} // namespace
