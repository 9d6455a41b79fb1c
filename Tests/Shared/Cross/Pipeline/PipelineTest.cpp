#include "Shared/Cross/Pipeline/Pipeline.h"

#include "Shared/PC/Program/ProgramPath.h"
#include "Tests/Shared/Cross/Pipeline/ProjectTree.h"

namespace {

using testing::HasSubstr;

class PipelineTest : public ProjectTree {};

TEST_F(PipelineTest, IsFoundOnTheWayUp) {
    EXPECT_THROW(Pipeline::Get(), std::runtime_error);
    EXPECT_THROW(Pipeline::Shutdown(), std::runtime_error);
    Write("studio\\pipeline.ini", Lines(Project("foo", "Art")));
    EXPECT_EQ(Pipeline::Initialize(Path("STUDIO\\tools\\bin\\max.exe").c_str()), 0);
    EXPECT_EQ(Pipeline::Get()->GetIniFile(), Path("STUDIO\\pipeline.ini"));
    EXPECT_THROW(Pipeline::Initialize(Path("other\\x").c_str()), std::runtime_error);
    Pipeline::Shutdown();
    EXPECT_EQ(Pipeline::Initialize(Path("other\\deep\\x.pvx").c_str()), Pipeline::Result_NoFile);
    EXPECT_FALSE(Pipeline::IsInitialized());
    EXPECT_THAT(Pipeline::GetInitializeError(), HasSubstr("no pipeline.ini in " + Path("other\\deep")));
    EXPECT_THAT(Pipeline::GetInitializeError(), testing::EndsWith(", Z:\\"));
    EXPECT_TRUE(m_Reports.HasWarning("PIPELINE -- no pipeline.ini"));
}

TEST_F(PipelineTest, ANullStartIsTheProgramsPlace) {
    Write("home\\pipeline.ini", Lines(Project("foo", "Art")));
    const std::string before = ProgramPath::GetHome();
    ProgramPath::SetHome(Native("home\\sub").string());
    EXPECT_EQ(Pipeline::Initialize(nullptr), 0);
    ProgramPath::SetHome(before);
    EXPECT_THAT(Pipeline::Get()->GetIniFile(), testing::EndsWith("\\home\\pipeline.ini"));
}

TEST_F(PipelineTest, BadFilesHaveTheirCodes) {
    const std::string noParent = Project("a", "A", "Parent").substr(0, Project("a", "A", "Parent").size() - 7);
    const struct {
        std::string text;
        int result;
        const char* pReason;
    } s_Cases[] = {
        {"", 2, "holds no section"},
        {std::string(100000, '\0'), 2, "holds no section"},
        {Lines("; nothing\n"), 2, "holds no section"},
        {Project("foo", "Art"), 2, "lines have to end with CR LF"}, // LF alone
        {std::string(0x1000001, 'x'), 2, "more than the 16777216"},
        {Lines("[Global]\nToolsData=x\n"), 3, "holds no section [project:name]"},
        {Lines(noParent + "Parents=x\n" + Project("b", "B")), 3, "project 'a' has no key 'parent'"},
        {Lines(Project("a", "A") + "[project:b]\nDataSource=x\n"), 3, "project 'b' has no key 'datasourceshared'"},
        {Lines(Project("a", std::string(255, 'x'))), 3, "260 characters or more at 'datasourceshared'"},
        {Lines(Project("a", std::string(600, 'x'))), 3, "has no key 'datasource'"},
    };
    for (const auto& [text, result, pReason] : s_Cases) {
        m_Reports.Clear();
        Write("proj\\pipeline.ini", text);
        EXPECT_EQ(Pipeline::Initialize(Path("proj\\x.pvx").c_str()), result) << pReason;
        EXPECT_FALSE(Pipeline::IsInitialized());
        EXPECT_THAT(Pipeline::GetInitializeError(), HasSubstr(pReason));
        EXPECT_TRUE(m_Reports.HasWarning("PIPELINE -- " + Path("proj\\pipeline.ini"))) << pReason;
    }
}

TEST_F(PipelineTest, ProjectsAndSections) {
    ASSERT_EQ(Initialize(Project("Foo", "Art", "Parent=Base\n") + "[Burner]\nburnerPath=bin\n[p4]\nRevControlPort=\n" +
                         Project("base", "D:\\Base")),
              0);
    const Pipeline& pipeline = *Pipeline::Get();
    ASSERT_EQ(pipeline.ProjectCount(), 2u);
    EXPECT_STREQ(pipeline.GetProjectName(1), "foo");
    ASSERT_EQ(pipeline.SectionCount(), 2u);
    EXPECT_STREQ(pipeline.GetSectionName(0), "burner");
    EXPECT_THROW(pipeline.GetSectionName(2), std::runtime_error);
    EXPECT_THROW(pipeline.GetProjectName(2), std::runtime_error);
    EXPECT_TRUE(pipeline.HasProject("FOO") && !pipeline.HasProject("fo"));
    EXPECT_STREQ(pipeline.GetDescription("foo"), "The Foo");
    EXPECT_STREQ(pipeline.GetParent("foo"), "Base");
    const std::pair<Pipeline::DataKind, const char*> folders[] = {
        {Pipeline::Kind_Source, "src"}, {Pipeline::Kind_SourceShared, "shared"}, {Pipeline::Kind_Burn, "burn"},
        {Pipeline::Kind_Locale, "loc"}, {Pipeline::Kind_Intermediate, "int"},    {Pipeline::Kind_Generic, "gen"},
        {Pipeline::Kind_Final, "Data"}, {Pipeline::Kind_Preview, "pre"}};
    for (const auto& [kind, pFolder] : folders) {
        EXPECT_EQ(pipeline.GetFolder("foo", kind), Path(std::string("proj\\Art\\") + pFolder));
        EXPECT_EQ(pipeline.GetFolder("base", kind), std::string("D:\\Base\\") + pFolder);
    }
    EXPECT_STREQ(pipeline.GetFolder("foo", Pipeline::Kind_AttrLoc), "attr");
}

TEST_F(PipelineTest, Values) {
    ASSERT_EQ(
        Initialize("[Global]\nToolsData=tools/data\nRooted=\\x\nAbs=Q:\\x\nf=-1.5\nplus=+2\nbad=1.5x\nnone=\ninf=inf\n"
                   "yes=YES\noff=0\n[p4]\nRevControlPort=\n" +
                   Project("foo", "Art")),
        0);
    const Pipeline& pipeline = *Pipeline::Get();
    std::string text;
    EXPECT_TRUE(pipeline.GetString("GLOBAL", "toolsdata", text));
    EXPECT_EQ(text, "tools/data");
    EXPECT_TRUE(pipeline.GetString("p4", "RevControlPort", text)) << "found, though empty";
    EXPECT_EQ(text, "");
    EXPECT_FALSE(pipeline.GetString("p4", "none", text) || pipeline.GetString("none", "toolsdata", text));
    EXPECT_FALSE(pipeline.GetString("project:foo", "DataSource", text)) << "a project is no section";
    EXPECT_TRUE(pipeline.GetPath("Global", "ToolsData", text));
    EXPECT_EQ(text, Path("proj\\tools\\data"));
    EXPECT_TRUE(pipeline.GetPath("Global", "Rooted", text));
    EXPECT_EQ(text, Path("proj\\\\x"));
    EXPECT_TRUE(pipeline.GetPath("Global", "Abs", text));
    EXPECT_EQ(text, "Q:\\x");

    char buffer[11] = "x";
    EXPECT_TRUE(pipeline.GetString("Global", "ToolsData", buffer, 11));
    EXPECT_THROW(pipeline.GetString("Global", "ToolsData", buffer, 10), std::runtime_error);
    EXPECT_FALSE(pipeline.GetPath("Global", "missing", buffer, 11));
    EXPECT_STREQ(buffer, "");

    float number = 0.0f;
    EXPECT_TRUE(pipeline.GetFloat("Global", "f", number) && number == -1.5f);
    EXPECT_TRUE(pipeline.GetFloat("Global", "plus", number) && number == 2.0f);
    for (const char* const pKey : {"bad", "none", "inf", "missing"})
        EXPECT_TRUE(!pipeline.GetFloat("Global", pKey, number) && number == 0.0f) << pKey;
    bool flag = false;
    EXPECT_TRUE(pipeline.GetBool("Global", "yes", flag) && flag);
    EXPECT_TRUE(pipeline.GetBool("Global", "off", flag) && !flag);
    EXPECT_FALSE(pipeline.GetBool("Global", "plus", flag));
}

TEST_F(PipelineTest, FindsTheProjectOfAFile) {
    ASSERT_EQ(Initialize(Project("b", "Art") + Project("a", "Art2") + Project("c", "Art")), 0);
    const Pipeline& pipeline = *Pipeline::Get();
    const auto find = [&](const std::string& path) {
        const char* const pName = pipeline.FindProjectForFile(path.c_str(), Pipeline::Kind_Source);
        return std::string(pName ? pName : "-");
    };
    EXPECT_EQ(find(Path("proj\\Art\\src\\ebps\\x.max")), "b") << "the first of two that share a folder";
    EXPECT_EQ(find(Path("PROJ\\art\\SRC")), "b");
    EXPECT_EQ(find(Path("proj\\art2\\src\\x")), "a");
    EXPECT_EQ(find(Path("proj\\Art\\src2\\x")), "-");
    EXPECT_EQ(find(Path("proj\\Art\\gen\\x")), "-");
    EXPECT_EQ(find(Path("proj/Art/gen/../.\\src//x")), "b");
    EXPECT_EQ(find("proj\\art\\src\\x"), "-") << "from the current folder";
    EXPECT_EQ(find(""), "-");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_Root);
    EXPECT_EQ(find("proj\\art\\src\\x"), "b");
    EXPECT_EQ(find("..\\" + m_Root.filename().string() + "\\proj\\art\\src"), "b");
    EXPECT_EQ(find(Path("proj\\art\\src\\x").substr(2)), "b") << "from the current drive";
    std::filesystem::current_path(before);
}

} // namespace
