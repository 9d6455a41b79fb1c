#include "Host/Sdk/Listener.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared_Tools/Burner/BurnerFolder.h"
#include "Tests/Shared_Tools/PVXExport/Commands/CallCommand.h"

#include <chrono>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

constexpr const char* s_Start = "connect; read; send 42545242 01000000; read;";
constexpr const char* s_Update = "send 44505542 01000000 02000000 03000000 6f6e65;";
constexpr const char* s_Result = "send 53455242 01000000 00 01000000 00000000 03000000 656e64;";

class BurnerCommands : public testing::Test, private CharStream {
protected:
    BurnerCommands() { thread_locals().current_stdout = this; }
    ~BurnerCommands() override {
        thread_locals().current_stdout = nullptr;
        Call("ombl_burner_reset", {});
    }

    void puts(const char* pText) override {
        m_Text += pText;
        m_LastText = std::chrono::steady_clock::now();
    }
    Value Burn(const std::string& steps = "exit 0") {
        BurnerFolder::Play(steps);
        m_Text.clear();
        return Call("ombl_burner", {Value(m_Folder.Path("gen/a.pvx"))});
    }
    void ExpectFailure(const std::string& text) {
        EXPECT_EQ(Burn(), Value(false)) << text;
        EXPECT_EQ(m_Text, "Burner: " + text + "\n");
        EXPECT_FALSE(Pipeline::IsInitialized());
    }
    // The configuration without what stands between these.
    void WriteIniWithout(const std::string& from, const std::string& to) const {
        std::string ini = BurnerFolder::GetIni();
        const size_t start = ini.find(from);
        m_Folder.WriteIni(ini.erase(start, ini.find(to) - start));
    }

    ReportCapture m_Reports;
    BurnerFolder m_Folder{"burner-standin"};
    std::string m_Text;
    std::chrono::steady_clock::time_point m_LastText;
};

TEST_F(BurnerCommands, MessagesArePrintedAsTheyCome) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Burn(std::string(s_Start) + s_Update + "sleep 300;" + s_Result), Value(true));
    EXPECT_EQ(m_Text, "one\nend\n");
    EXPECT_GE(m_LastText - start, std::chrono::milliseconds(300));
    EXPECT_TRUE(m_Folder.IsClean());
    EXPECT_FALSE(Pipeline::IsInitialized());
    const std::string request = m_Folder.GetLog().at(3);
    EXPECT_EQ(request.substr(0, 16), "4357524200000000"); // without a server all is in the default changelist
    EXPECT_EQ(request.substr(request.size() - 8), "00000001");
}

TEST_F(BurnerCommands, FailuresOfTheBurn) {
    EXPECT_EQ(Burn(std::string(s_Start) + s_Update + "send 53455242 00000000 00 00000000"), Value(false));
    EXPECT_EQ(m_Text, "one\nBurner: Burn failed, see log messages.'\n");
    EXPECT_EQ(Burn(), Value(false));
    EXPECT_EQ(m_Text, "Error: Burner --\nBurner: Burn failed, see log messages.'\n");
}

TEST_F(BurnerCommands, EachStepOfTheStartHasItsText) {
    WriteIniWithout("RevControlPort", "[project");
    ExpectFailure("'RevControlPort' not listed under [p4] in pipeline.ini");
    WriteIniWithout("burnerPath", "[p4]");
    ExpectFailure("'burnerPath' not listed under [burner] in pipeline.ini");
    m_Folder.WriteIni(BurnerFolder::GetIni());
    m_Folder.Get().Remove("tools");
    ExpectFailure("Unable to add Tools Data alias");
    WriteIniWithout("ToolsData", "[burner]");
    ExpectFailure("'ToolsData' not listed under [Global] in pipeline.ini");
}

TEST_F(BurnerCommands, TheCountOfArgumentsIsLookedAtBehindTheStart) {
    const Value file(m_Folder.Path("gen/a.pvx"));
    EXPECT_EQ(Call("ombl_burner", {file, file}), Value(false));
    EXPECT_EQ(m_Text, "Burner: usage 'burner <merged pvx file>'\n");
    m_Folder.Get().Remove("pipeline.ini");
    m_Text.clear();
    EXPECT_EQ(Call("ombl_burner", {file, file}), Value(false));
    EXPECT_EQ(m_Text, "Burner: Unable to find associated project.\n");
    EXPECT_THROW(Call("ombl_burner", {Value(3)}), ScriptError);
}

} // namespace
