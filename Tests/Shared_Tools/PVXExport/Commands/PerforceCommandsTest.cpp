#include "Host/Sdk/Listener.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/Cross/RevControlAPI/P4Server.h"
#include "Tests/Shared_Tools/PVXExport/Commands/CallCommand.h"

#include <stdexcept>

#include <gtest/gtest.h>

namespace {

class PerforceCommands : public testing::Test, private CharStream {
protected:
    PerforceCommands() {
        thread_locals().current_stdout = this;
        SetPort(P4Server::s_Port);
    }
    ~PerforceCommands() override { thread_locals().current_stdout = nullptr; }

    void puts(const char* pText) override { m_Text += pText; }
    Value Open(const std::string& name) { return Call("ombl_p4_openoradd", {Value(m_Server.Path(name))}); }
    void ExpectFailure(const std::vector<Value>& arguments, const std::string& text) {
        m_Text.clear();
        EXPECT_EQ(Call("ombl_p4_openoradd", arguments), Value(false)) << text;
        EXPECT_EQ(m_Text, "PerforceMS: " + text + "\n");
    }
    void SetPort(const std::string& port) {
        m_Server.Write("pipeline.ini", "[p4]\r\nRevControlPort=" + port + "\r\n" + s_Project);
    }
    static constexpr const char* s_Project =
        "[project:a]\r\nDataBurn=b\r\nDataSource=s\r\nDataSourceShared=h\r\nDataIntermediate=i\r\nDataGeneric=g\r\n"
        "DataFinal=f\r\nDataPreview=p\r\nLocaleFolder=l\r\nAttrLoc=x\r\nParent=\r\n";

    ReportCapture m_Reports;
    P4Server m_Server;
    std::string m_Text;
};

TEST_F(PerforceCommands, OpensInTheToolsChangelist) {
    m_Server.Submit("g/old.pvx", "o");
    m_Server.Write("g/new.pvx", "n");
    EXPECT_EQ(Open("g/old.pvx"), Value(true));
    EXPECT_EQ(Open("G/NEW.pvx"), Value(true));
    EXPECT_EQ(Open("g/old.pvx"), Value(true)); // is open already
    EXPECT_EQ(m_Server.GetOpened("g/old.pvx"), "edit 1");
    EXPECT_EQ(m_Server.GetOpened("g/new.pvx"), "add 1");
    EXPECT_EQ(m_Server.Load().changes.at(0).description, "PVX Export Changes");
    EXPECT_EQ(m_Text, "");
}

TEST_F(PerforceCommands, FailuresAreToldOnTheListener) {
    m_Server.Submit("theirs", "t");
    const Value theirs(m_Server.Path("theirs"));
    m_Server.Open("theirs", 0);
    ExpectFailure({theirs}, "Could not open or add requested file!");
    ExpectFailure({theirs, theirs}, "usage 'ombl_p4_openoradd <file>'");
    ExpectFailure({}, "usage 'ombl_p4_openoradd <file>'");
    m_Server.Say("changes", "exit: 0\n");
    m_Server.Say("change", "error: no\nexit: 1\n");
    ExpectFailure({theirs}, "Unable to create changelist");
    m_Server.Write("pipeline.ini", s_Project);
    ExpectFailure({theirs}, "'RevControlPort' not listed under [p4] in pipeline.ini");
    std::filesystem::remove(m_Server.Native("pipeline.ini"));
    ExpectFailure({theirs}, "'RevControlPort' not listed under [p4] in pipeline.ini");
    EXPECT_THROW(Call("ombl_p4_openoradd", {Value(3)}), ScriptError);
}

TEST_F(PerforceCommands, WithoutAServerAttributesCount) {
    m_Server.Submit("closed", "c");
    SetPort("");
    EXPECT_EQ(Open("not there yet"), Value(true));
    ExpectFailure({Value(m_Server.Path("closed"))}, "Could not open or add requested file!");
    EXPECT_TRUE(m_Server.TakeCommands().empty());
    EXPECT_EQ(Call("ombl_p4_reset", {}), Value(true));
}

} // namespace
