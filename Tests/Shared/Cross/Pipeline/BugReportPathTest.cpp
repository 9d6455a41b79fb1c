#include "Shared/Cross/Pipeline/BugReportPath.h"

#include "Shared/Cross/Debug/CrashState.h"
#include "Tests/Shared/Cross/Pipeline/ProjectTree.h"

namespace {

class BugReportPathTest : public ProjectTree {
protected:
    // Where the reporter is for a configuration with these lines.
    std::string FindReporter(const std::string& lines) {
        EXPECT_EQ(Initialize(Project("art", "art") + lines), Pipeline::Result_Ok);
        Pipeline::Shutdown();
        return dbGetCrashRecord().reporterFolder;
    }
};

} // namespace

TEST_F(BugReportPathTest, IsTheFolderOfTheExecutable) {
    const std::string root = m_Root.string();
    std::filesystem::create_directories(m_Root / "proj/Tools");
    EXPECT_EQ(FindReporter("[bugreport]\nExePath=TOOLS\\setup.exe\n"), root + "/proj/Tools/BugReport/");
    EXPECT_EQ(FindReporter("[bugreport]\nExePath=Tools\\\n"), root + "/proj/Tools/BugReport/");
    EXPECT_EQ(FindReporter("[bugreport]\nExePath=Z:\\none\\x.exe\n"), "/none/BugReport/");
    EXPECT_EQ(FindReporter("[bugreport]\nExePath=tool.exe\n"), root + "/proj/BugReport/");
}

TEST_F(BugReportPathTest, WithoutTheKeyThereIsNone) {
    EXPECT_NE(FindReporter("[bugreport]\nExePath=Z:\\none\\x.exe\n"), "");
    EXPECT_EQ(FindReporter("[bugreport]\nother=1\n"), "");
}
