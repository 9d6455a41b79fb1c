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
    const std::string project = m_Root.string() + "/proj/";
    std::filesystem::create_directories(project + "Tools");
    const std::pair<const char*, std::string> cases[] = {{"ExePath=TOOLS\\setup.exe", project + "Tools/BugReport/"},
                                                         {"ExePath=Tools\\", project + "Tools/BugReport/"},
                                                         {"ExePath=Z:\\none\\x.exe", "/none/BugReport/"},
                                                         {"ExePath=tool.exe", project + "BugReport/"},
                                                         {"other=1", ""}};
    for (const auto& [pLine, folder] : cases)
        EXPECT_EQ(FindReporter(std::string("[bugreport]\n") + pLine + '\n'), folder) << pLine;
}
