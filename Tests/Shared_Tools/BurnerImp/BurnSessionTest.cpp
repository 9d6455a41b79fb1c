#include "Shared_Tools/BurnerImp/BurnSession.h"

#include "Shared/PC/Win32Util/NamedPipe.h"
#include "Shared_Tools/Burner/Protocol/BurnerMsg.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;
using testing::HasSubstr;

// The tools' side of the pipe, which says what it likes.
class BurnSessionTest : public testing::Test {
protected:
    BurnSessionTest() {
        setenv("PVX_PIPES", m_Folder.Native("pipes").c_str(), 1);
        m_Folder.MakeFolder("tools");
        m_Folder.Write("pipeline.ini", "[global]\r\nToolsData=tools\r\n[project:a]\r\nDescription=a\r\nDataBurn=b\r\n"
                                       "DataSource=s\r\nDataSourceShared=h\r\nDataIntermediate=i\r\nDataGeneric=g\r\n"
                                       "DataFinal=f\r\nDataPreview=p\r\nLocaleFolder=l\r\nAttrLoc=x\r\nParent=\r\n");
    }
    ~BurnSessionTest() override { unsetenv("PVX_PIPES"); }

    // The answer to the messages; the setup's own isn't counted when there are two.
    std::string Play(const std::vector<std::string>& messages) {
        NamedPipe pipe("BurnerPipe", NamedPipe::Role::Server);
        EXPECT_TRUE(pipe.Open());
        std::thread burner([&] { m_Status = RunBurnSession(); });
        EXPECT_TRUE(pipe.Connect());
        std::string answer;
        for (const std::string& message : messages) {
            EXPECT_TRUE(pipe.Write(message.data(), static_cast<uint32_t>(message.size())));
            answer = ReadAnswer(pipe);
        }
        pipe.Close();
        burner.join();
        return answer;
    }
    static std::string ReadAnswer(NamedPipe& pipe) {
        NamedPipeRawMsg raw;
        if (!NamedPipeMsg::ReadMsg(pipe, raw))
            return "gone";
        if (NamedPipeMsg::IsMsg<BurnerReadyMsg>(raw))
            return "ready";
        BurnerErrorMsg error;
        return NamedPipeMsg::IsMsg<BurnerErrorMsg>(raw) && NamedPipeMsg::ParseMsg(raw, error)
                   ? error.messages.at(0).text
                   : "another";
    }
    static std::string Field(const std::string& text) { return text + std::string(260 - text.size(), '\0'); }
    std::string Setup(char value = 8) const {
        return "USRB" + Field(m_Folder.Path("pipeline.ini")) + value + "\0\0\0"s;
    }

    TempFolder m_Folder;
    BurnStatus m_Status = Burn_Done;
};

TEST_F(BurnSessionTest, WithoutAServerThereIsAStatus) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(RunBurnSession(std::chrono::milliseconds(50)), Burn_NoServer);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "BurnerImp: nobody offers the pipe \"BurnerPipe\"; the burner is started by the tools\n");
}

TEST_F(BurnSessionTest, SetupsThatAreNone) {
    EXPECT_THAT(Play({"CWRB"}), HasSubstr("the first message has to be the setup"));
    EXPECT_EQ(m_Status, Burn_Failed);
    EXPECT_THAT(Play({"USRB"}), HasSubstr("the setup message is damaged"));
    EXPECT_THAT(Play({"USRB" + std::string(264, 'x')}), HasSubstr("the setup message is damaged"));
    EXPECT_THAT(Play({"US"}), HasSubstr("a message came that is none"));
    EXPECT_THAT(Play({std::string(20 << 20, 'x')}), HasSubstr("a message came that is none"));
    EXPECT_THAT(Play({Setup(9)}), HasSubstr("the setup has the value 9, this burner takes 8"));
    EXPECT_EQ(Play({Setup()}), "ready");
    EXPECT_EQ(m_Status, Burn_Failed); // nobody wanted a job
}

TEST_F(BurnSessionTest, JobsThatAreNone) {
    EXPECT_THAT(Play({Setup(), Setup()}), HasSubstr("the second message has to be a job"));
    EXPECT_THAT(Play({Setup(), "CWRB" + std::string(527, '\0')}), HasSubstr("the request message is damaged"));
    EXPECT_THAT(Play({Setup(), "LLFB\0\0\0\0\xff\xff\xff\xff"s}), HasSubstr("the file list message is damaged"));
    EXPECT_THAT(Play({Setup(), "LFUB\0\0\0\0\1\0\0\0\1\4\0\0"s + std::string(1025, 'x')}),
                HasSubstr("String buffer overrun!"));
    EXPECT_EQ(Play({Setup(), "LLFB\0\0\0\0\0\0\0\0"s}), "another"); // the result
    EXPECT_EQ(m_Status, Burn_Done);
}

} // namespace
