#include "Tests/Shared/Cross/RevControlAPI/P4Fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Api = RevControlAPI;

class ConnectionTest : public P4Fixture {};

TEST_F(ConnectionTest, ABrokenOneIsMadeAnew) {
    m_Server.Submit("a", "a");
    m_Server.SetFault("drop", "1");
    EXPECT_FALSE(m_Control.Edit(Name("a"), 0));
    EXPECT_TRUE(m_Control.Edit(Name("a"), 0));
    EXPECT_TRUE(m_Control.Edit(Name("a"), 0));
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("edit a", "info", "edit a", "edit a"));
    EXPECT_TRUE(m_Control.Initialize("")); // the program's own environment knows the port
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("-s info"));
}

TEST_F(ConnectionTest, AfterAFailedReconnectionNothingIsRun) {
    m_Server.Submit("a", "a");
    m_Server.SetFault("down");
    EXPECT_EQ(m_Control.GetFileStatus(Name("a")), Api::Status_Unknown);
    EXPECT_FALSE(m_Control.IsOpenedIn(Name("a"), 0));
    EXPECT_THAT(m_Server.TakeCommands(), ElementsAre("fstat a", "info"));
    EXPECT_TRUE(m_Reports.HasWarning("REVCONTROL -- no connection: Perforce client error:"));
    m_Server.ClearFault("down");
    EXPECT_FALSE(m_Control.Edit(Name("a"), 0));
    EXPECT_EQ(m_Control.GetLastError(), "Failed to open for edit file: " + Quote("a"));
    int32_t number = 0;
    EXPECT_FALSE(m_Control.FindOrCreateChangelist("Mine", number));
    EXPECT_FALSE(m_Control.GetOpenedChangelist(Name("a"), number));
    EXPECT_EQ(m_Control.Sync(Name("a"), false), Api::Sync_Failed);
    EXPECT_EQ(m_Control.OpenOrAdd(Name("a"), 0), Api::Open_Failed);
    EXPECT_TRUE(m_Server.TakeCommands().empty());
}

TEST_F(ConnectionTest, AProgramThatDoesntComeToItsEnd) {
    m_Server.Submit("a", "a");
    setenv("PVX_P4_LIMIT", "0.25", 1);
    const std::pair<const char*, const char*> cases[] = {
        {"hang", "p4-standin sync: no answer within 0.25 seconds (PVX_P4_LIMIT); it was ended"},
        {"break", "sync: broke off with exit status 3"}};
    for (const auto& [pFault, pReason] : cases) {
        m_Server.SetFault(pFault, "sync");
        EXPECT_EQ(m_Control.Sync(Name("a"), false), Api::Sync_Failed);
        EXPECT_THAT(m_Control.GetLastError(), HasSubstr(pReason));
        EXPECT_TRUE(m_Reports.HasWarning("REVCONTROL -- "));
        m_Server.ClearFault(pFault);
        EXPECT_EQ(m_Control.Sync(Name("a"), false), Api::Sync_UpToDate);
    }
}

TEST_F(ConnectionTest, ABadLimitIsTold) {
    for (const char* pLimit : {"0", "-1", "soon", "10x", "nan", "1e400"}) {
        setenv("PVX_P4_LIMIT", pLimit, 1);
        m_Reports.Clear();
        EXPECT_TRUE(m_Control.Initialize(P4Server::s_Port));
        EXPECT_TRUE(m_Reports.HasWarning(std::string("PVX_P4_LIMIT is '") + pLimit + "'"));
    }
}

TEST_F(ConnectionTest, HugeAnswersArentKept) {
    std::string lines;
    while (lines.size() < 16u << 20) // each takes more room than it has letters
        lines += "info: x\n";
    m_Server.Say("fstat", lines + "info1: action edit\nexit: 0\n");
    EXPECT_EQ(m_Control.GetFileStatus(Name("a")), Api::Status_Unknown);
    EXPECT_EQ(m_Reports.CountWarnings("the rest is dropped"), 1u);
}

class CreateTest : public testing::Test {
protected:
    bool IsLocal(RevControlAPI& control) const {
        int32_t number = 77;
        return control.FindOrCreateChangelist("Mine", number) && number == 0;
    }

    ReportCapture m_Reports;
    P4Server m_Server;
};

TEST_F(CreateTest, WithoutAServerThereIsNothingOrTheFilesAlone) {
    for (const int type : {Api::Type_P4, Api::Type_P4OrLocal})
        EXPECT_FALSE(IsLocal(*RevControlAPI::Create(P4Server::s_Port, type)));
    m_Server.TakeCommands();
    EXPECT_TRUE(IsLocal(*RevControlAPI::Create("", Api::Type_P4OrLocal)));
    EXPECT_TRUE(m_Server.TakeCommands().empty());
    m_Server.SetFault("down");
    EXPECT_TRUE(IsLocal(*RevControlAPI::Create(P4Server::s_Port, Api::Type_P4OrLocal)));
    EXPECT_TRUE(m_Reports.GetErrors().empty());
    EXPECT_EQ(RevControlAPI::Create(P4Server::s_Port, Api::Type_P4), nullptr);
    EXPECT_THAT(m_Reports.GetErrors(), ElementsAre("RevControlP4::Initialize failed\n."));
}

TEST_F(CreateTest, AMissingOrFailingProgramIsNoConnection) {
    for (const char* pProgram : {"no-such-program-here", "/no/such/p4", "true", "false", "/"}) {
        setenv("PVX_P4", pProgram, 1);
        m_Reports.Clear();
        EXPECT_EQ(RevControlAPI::Create(P4Server::s_Port, Api::Type_P4), nullptr) << pProgram;
        EXPECT_TRUE(m_Reports.HasWarning(std::string("no connection: ") + pProgram + " info: ")) << pProgram;
    }
    m_Server.Say("info", "info: User name: me\nexit: 0\n");
    setenv("PVX_P4", (Process::GetExecutableFolder() + "p4-standin").c_str(), 1);
    EXPECT_EQ(RevControlAPI::Create(P4Server::s_Port, Api::Type_P4), nullptr);
    EXPECT_TRUE(m_Reports.HasWarning("doesn't tell the names of user and client"));
}

TEST_F(CreateTest, UnknownTypes) {
    EXPECT_TRUE(IsLocal(*RevControlAPI::Create(P4Server::s_Port, Api::Type_Local)));
    for (const int type : {-1, 3}) {
        EXPECT_THROW(RevControlAPI::Create(P4Server::s_Port, type), std::runtime_error);
        EXPECT_TRUE(m_Reports.HasError("Unknown RevisionControlType " + std::to_string(type)));
    }
}

} // namespace
