#include "Shared_Tools/Burner/Burner.h"

#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared_Tools/Burner/BurnerFolder.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;

// Messages as they lie on the pipe.
constexpr const char* s_Start = "connect; read; send 42545242 01000000; read;";
constexpr const char* s_Update = "send 44505542 02000000 00000000 03000000 6f6e65 01000000 03000000 74776f;";
constexpr const char* s_Result = "send 53455242 01000000 01 01000000 00000000 04000000 646f6e65;";
constexpr const char* s_Failed = "send 53455242 00000000 00 00000000;";

constexpr const char* s_ReadError = "Error: Burner --Failed to read a post burn request message from the burner";

class BurnerTest : public testing::Test {
protected:
    BurnerTest() {
        EXPECT_EQ(Pipeline::Initialize(m_Folder.Path("gen/x").c_str()), Pipeline::Result_Ok);
        Burner::Init(m_Folder.Path("net").c_str());
    }
    ~BurnerTest() override {
        Burner::Shutdown();
        Pipeline::Shutdown();
    }

    bool Burn(const std::string& steps, bool flag0 = false, bool flag1 = false) {
        BurnerFolder::Play(steps);
        m_Messages.clear();
        m_Result = 99;
        return Burner::Instance()->Burn(7, m_Folder.Path("gen/A b.pvx").c_str(), flag0, flag1, m_Result, m_Messages);
    }
    std::vector<std::string> GetTexts() const {
        std::vector<std::string> texts;
        for (const BurnerMessage& message : m_Messages)
            texts.push_back(message.text);
        return texts;
    }
    // The job fails with exactly these lines and leaves nothing.
    void ExpectFailure(const std::string& steps, const std::vector<std::string>& texts) {
        EXPECT_FALSE(Burn(steps)) << steps;
        EXPECT_EQ(GetTexts(), texts) << steps;
        EXPECT_TRUE(m_Folder.IsClean()) << steps;
        bool done = true;
        BurnerMessageList messages;
        EXPECT_FALSE(Burner::Instance()->Update(done, m_Result, messages));
        EXPECT_EQ(messages.at(0).text, "Error: Burner --Asyncronous Burn not in progress");
        EXPECT_FALSE(done);
    }
    static bool HasChild() { return waitpid(-1, nullptr, WNOHANG) >= 0; }

    ReportCapture m_Reports;
    BurnerFolder m_Folder{"burner-standin"};
    BurnerMessageList m_Messages;
    int32_t m_Result = 0;
};

std::string Hex(const std::string& text) {
    std::string digits;
    for (const char c : text) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        digits += pair;
    }
    return digits;
}

std::string HexField(const std::string& text) { return Hex(text) + std::string((260 - text.size()) * 2, '0'); }

TEST_F(BurnerTest, AJobFromStartToEnd) {
    ASSERT_TRUE(Burn(std::string(s_Start) + s_Update + s_Update + s_Result, true));
    EXPECT_EQ(m_Result, 1);
    const BurnerMessageList expected{{"one", 0}, {"two", 1}, {"one", 0}, {"two", 1}, {"done", 0}};
    EXPECT_EQ(m_Messages, expected);
    EXPECT_TRUE(m_Folder.IsClean());
    EXPECT_FALSE(HasChild());
    const std::vector<std::string> log = m_Folder.GetLog();
    ASSERT_EQ(log.size(), 5u);
    EXPECT_EQ(log[0].substr(0, log[0].rfind('_') + 1), Process::GetExecutableFolder() + "Burner_");
    EXPECT_EQ(log[1] + "/", Process::GetExecutableFolder());
    EXPECT_EQ(log[2], "55535242" + HexField(m_Folder.Path("pipeline.ini")) + "08000000");
    EXPECT_EQ(log[3], "43575242" + std::string("07000000") + HexField(m_Folder.Path("gen/")) + HexField("A b\\.pvx$") +
                          "01000001");
    EXPECT_EQ(log[4], "end");
}

TEST_F(BurnerTest, AResultOfZeroEndsTheJobWell) {
    EXPECT_TRUE(Burn(std::string(s_Start) + s_Failed));
    EXPECT_EQ(m_Result, 0);
    EXPECT_TRUE(m_Messages.empty());
}

TEST_F(BurnerTest, ListsOfFiles) {
    const std::array<std::string, 2> files{"Z:\\a", "bc"};
    const std::string body = "07000000"
                             "02000000"
                             "04000000"
                             "5a3a5c61"
                             "02000000"
                             "6263";
    BurnerFolder::Play(std::string(s_Start) + s_Result);
    ASSERT_TRUE(Burner::Instance()->BurnFileList(7, files, m_Result, m_Messages, true));
    EXPECT_EQ(m_Folder.GetLog().at(3), "4c4c4642" + body);
    ASSERT_TRUE(Burner::Instance()->BurnUpdateFileList(7, files, m_Result, m_Messages));
    EXPECT_EQ(m_Folder.GetLog().at(3), "4c465542" + body);
    EXPECT_EQ(m_Result, 1);
}

TEST_F(BurnerTest, JobsThatGoOnBesides) {
    BurnerFolder::Play(std::string(s_Start) + "sleep 300;" + s_Update + s_Result);
    Burner& burner = *Burner::Instance();
    ASSERT_TRUE(burner.BurnAsyncDirect(0, "Z:\\d", ".*", false, true, true, false, m_Messages));
    EXPECT_FALSE(burner.BurnDirect(0, "Z:\\d", ".*", false, false, false, false, m_Result, m_Messages));
    EXPECT_EQ(GetTexts(), std::vector<std::string>{"Error: Burner --Burn already in progress"});
    bool done = false;
    int steps = 0;
    const auto start = std::chrono::steady_clock::now();
    for (; !done; ++steps)
        ASSERT_TRUE(burner.Update(done, m_Result, m_Messages));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250));
    EXPECT_LT(steps, 20); // each without a message is a pause
    EXPECT_EQ(m_Messages.size(), 4u);
    EXPECT_EQ(m_Folder.GetLog().at(3).substr(m_Folder.GetLog().at(3).size() - 8), "00010100");
    EXPECT_TRUE(m_Folder.IsClean());
}

TEST_F(BurnerTest, ABurnerThatNeverComesThrough) {
    ExpectFailure("exit 0", {"Error: Burner --"});
    ExpectFailure("sleep 700; exit 3", {"Error: Burner --Burner failed to connect to the Burner Process"});
    // Whether the setup still finds somebody is a matter of luck.
    EXPECT_FALSE(Burn("sleep 600; connect; exit 3"));
    EXPECT_THAT(GetTexts(), ElementsAre(AnyOf("Error: Burner --Failed to Send the Setup Message to the burner",
                                              "Error: Burner --Failed to read a Message from the Burner Process")));
    EXPECT_TRUE(m_Folder.IsClean());
    EXPECT_FALSE(HasChild());
}

TEST_F(BurnerTest, AnswersToTheSetup) {
    const std::string setup = "connect; read;";
    ExpectFailure(setup + "sleep 500; exit 0", {"Error: Burner --Failed to read a Message from the Burner Process"});
    ExpectFailure(setup + "send 4254", {"Error: Burner --Failed to read a Message from the Burner Process"});
    ExpectFailure(setup + "send 52524542 01000000 02000000 03000000 626164", {"bad"});
    ExpectFailure(setup + "send 44505542 00000000", {"Error: Burner --Unknown message read from the burner"});
    EXPECT_FALSE(Burn(setup + "send 42545242 0100000000"));
    EXPECT_THAT(GetTexts(), ElementsAre(HasSubstr("(sizeof(T) == msg.GetMessageSize())")));
}

TEST_F(BurnerTest, ABurnerThatDiesInItsJob) {
    ExpectFailure(std::string(s_Start) + "sleep 100; exit 9", {s_ReadError});
    ExpectFailure(std::string(s_Start) + s_Update + "sleep 200; exit 9", {"one", "two", s_ReadError});
    EXPECT_FALSE(HasChild());
}

TEST_F(BurnerTest, MessagesOfTheJobThatAreNone) {
    const std::string start = s_Start;
    ExpectFailure(start + "send 52524542 01000000 02000000 03000000 626164", {"bad"});
    ExpectFailure(start + "send 4142434400", {"Error: Burner --Post burn Request message received is Unknown"});
    ExpectFailure(start + "send 4450", {s_ReadError});                                       // half a type
    ExpectFailure(start + "send 44505542 02000000 00000000 03000000 6f6e65", {s_ReadError}); // half a list
    ExpectFailure(start + "send 53455242 01000000", {s_ReadError});
    ExpectFailure(start + "send 44505542 ffffff7f", {s_ReadError}); // a count without messages
    ExpectFailure(start + "send 44505542 01000000 00000000 01040000" + std::string(1025 * 2, '4'),
                  {"Error: Burner --String buffer overrun!"});
}

TEST_F(BurnerTest, AFloodOfMessagesEnds) {
    const auto start = std::chrono::steady_clock::now();
    const std::string many = "flood 44505542 88130000" + std::string(5000 * 16, '0'); // empty ones
    EXPECT_FALSE(Burn(std::string(s_Start) + many));
    EXPECT_EQ(m_Messages.back().text, "Error: Burner --Too many messages from the burner");
    EXPECT_LE(m_Messages.size(), 1000001u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    EXPECT_TRUE(m_Folder.IsClean());
}

TEST_F(BurnerTest, ModulesThatCantBeStarted) {
    m_Folder.Get().Remove("net/BurnerImp.exe");
    EXPECT_FALSE(Burn("exit 0"));
    EXPECT_EQ(GetTexts(),
              std::vector<std::string>{"Error: Burner --Failed to locate the burner module: 'BurnerImp.exe'."});
    m_Folder.Get().MakeFolder("net/BurnerImp.exe");
    EXPECT_FALSE(Burn("exit 0"));
    const std::string start = "Error: Burner --Failed to copy network file to local drive: src '" +
                              m_Folder.Path("net/BurnerImp.exe") + "' -> dest '" +
                              OSFile::FromNative(Process::GetExecutableFolder()) + "Burner_";
    EXPECT_TRUE(GetTexts().at(0).starts_with(start)) << GetTexts().at(0);
    EXPECT_TRUE(GetTexts().at(0).ends_with(".exe'."));
    m_Folder.Get().Remove("net/BurnerImp.exe");
    m_Folder.Write("net/BurnerImp.exe", "no program");
    EXPECT_FALSE(Burn("exit 0"));
    EXPECT_EQ(GetTexts(), std::vector<std::string>{"Error: Burner --Failed to spawn the Burner process"});
    std::filesystem::permissions(m_Folder.Get().Native("pipes"), std::filesystem::perms::all);
    EXPECT_FALSE(Burn("exit 0"));
    EXPECT_EQ(GetTexts(), std::vector<std::string>{"Error: Burner --Failed to create Pipe for communication"});
}

TEST_F(BurnerTest, TheFirstFreeNameIsTaken) {
    // A new file, since other tests have their copies in this folder, too.
    std::string leftover;
    std::FILE* pFile = nullptr;
    for (int number = 0; !pFile; ++number) {
        leftover = Process::GetExecutableFolder() + "Burner_" + std::to_string(number) + ".exe";
        pFile = std::fopen(leftover.c_str(), "wx");
    }
    std::fclose(pFile);
    ASSERT_TRUE(Burn(std::string(s_Start) + s_Result));
    EXPECT_NE(m_Folder.GetLog()[0], leftover);
    EXPECT_TRUE(std::filesystem::exists(leftover));
    std::filesystem::remove(leftover);
}

} // namespace
