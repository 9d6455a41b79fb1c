#include "Host/Sdk/Dialog.h"

#include "Host/Sdk/HostSetup.h"
#include "Tests/Host/Sdk/TestHost.h"

#include <gtest/gtest.h>

#include <array>

namespace {

constexpr int s_Box = 1015;
constexpr int s_List = 1019;

constexpr DialogControl s_Controls[] = {
    {ControlKind::CheckBox, s_Box, "A box"},   {ControlKind::ListBox, s_List, ""},
    {ControlKind::Label, -1, "A label"},       {ControlKind::Button, IDOK, "OK"},
    {ControlKind::Button, IDCANCEL, "Cancel"},
};
constexpr DialogTemplate s_Templates[] = {{103, "Options", s_Controls}, {105, "Errors...", s_Controls}};

// A dialog over one bool, as a module writes it.
bool OptionsProcedure(HWND hDialog, DialogMessage message, intptr_t param) {
    if (message == DialogMessage::Init) {
        SetUserWord(hDialog, param);
        CenterWindow(hDialog, GetParent(hDialog));
        CheckDlgButton(hDialog, s_Box, *reinterpret_cast<bool*>(param));
        AddListString(hDialog, s_List, "a line");
        return true;
    }
    bool& field = *reinterpret_cast<bool*>(GetUserWord(hDialog));
    if (message == DialogMessage::Command && param == s_Box) {
        field = !field;
        CheckDlgButton(hDialog, s_Box, field);
    } else if (message == DialogMessage::Command)
        EndDialog(hDialog, param == IDOK);
    return true;
}

class DialogTest : public testing::Test {
protected:
    DialogTest() { RegisterDialogs(m_Handle, s_Templates); }
    ~DialogTest() override { UnregisterResources(m_Handle); }

    intptr_t Show(bool& field) {
        return DialogBoxParam(m_Handle, 103, &m_MainWindow, OptionsProcedure, reinterpret_cast<intptr_t>(&field));
    }

    int m_Module = 0;
    HINSTANCE m_Handle = reinterpret_cast<HINSTANCE>(&m_Module);
    Window m_MainWindow{"main"};
};

TEST_F(DialogTest, PressesReachTheProcedure) {
    bool field = true;
    DialogAnswers answers({s_Box, s_Box, s_Box, IDOK, s_Box});
    EXPECT_EQ(Show(field), 1);
    EXPECT_FALSE(field) << "three presses count, the one after the end doesn't";
    ASSERT_EQ(answers.GetShown().size(), 1u);
    Window& shown = answers.GetShown()[0];
    EXPECT_EQ(shown.GetTitle(), "Options");
    EXPECT_EQ(shown.GetTemplateId(), 103);
    EXPECT_TRUE(shown.IsCentred());
    EXPECT_EQ(shown.GetCentre(), &m_MainWindow);
    EXPECT_TRUE(shown.FindControl(s_Box)->checked);
    EXPECT_EQ(shown.FindControl(s_List)->lines, std::vector<std::string>{"a line"});
}

TEST_F(DialogTest, OnlyBoxesAndButtonsCanBePressed) {
    bool field = false;
    DialogAnswers answers({s_List, -1, 4711, IDCANCEL, IDOK});
    EXPECT_EQ(Show(field), 0);
}

TEST_F(DialogTest, EndsWithoutAnAnswer) {
    bool field = false;
    EXPECT_EQ(Show(field), 0) << "nobody to ask, and the procedure ignores Close";
    DialogAnswers answers;
    EXPECT_EQ(DialogBoxParam(
                  m_Handle, 105, nullptr,
                  [](HWND hDialog, DialogMessage message, intptr_t) {
                      if (message == DialogMessage::Close)
                          EndDialog(hDialog, 7);
                      return true;
                  },
                  0),
              7);
}

TEST_F(DialogTest, UnknownTemplateIsAFailure) {
    bool field = false;
    UnregisterResources(m_Handle);
    EXPECT_EQ(Show(field), -1);
}

TEST(Resources, StringsBelongToTheirModule) {
    constexpr StringResource first[] = {{5, "five"}, {6, "six"}};
    constexpr StringResource second[] = {{5, "other"}};
    int modules[2] = {};
    const auto handleA = reinterpret_cast<HINSTANCE>(&modules[0]);
    const auto handleB = reinterpret_cast<HINSTANCE>(&modules[1]);
    RegisterStrings(handleA, first);
    RegisterStrings(handleB, second);
    std::array<char, 5> buffer;
    EXPECT_EQ(LoadString(handleA, 5, buffer), 4);
    EXPECT_STREQ(buffer.data(), "five");
    EXPECT_EQ(LoadString(handleB, 5, std::span(buffer).first(3)), 2);
    EXPECT_STREQ(buffer.data(), "ot");
    EXPECT_EQ(LoadString(handleB, 6, buffer), -1);
    EXPECT_STREQ(buffer.data(), "");
    UnregisterResources(handleA);
    EXPECT_EQ(LoadString(handleA, 5, buffer), -1);
    EXPECT_EQ(LoadString(handleB, 5, buffer), 5 - 1);
    UnregisterResources(handleB);
}

TEST(HostCore, FrameRateSetsTicks) {
    EXPECT_EQ(GetTicksPerFrame(), 160);
    EXPECT_FALSE(SetFrameRate(0));
    EXPECT_FALSE(SetFrameRate(4801));
    EXPECT_EQ(GetFrameRate(), 30);
    EXPECT_TRUE(SetFrameRate(29));
    EXPECT_EQ(GetTicksPerFrame(), 165);
    EXPECT_EQ(GetFrameRate(), 29);
    EXPECT_TRUE(SetFrameRate(4800));
    EXPECT_EQ(GetTicksPerFrame(), 1);
    SetFrameRate(30);
}

std::string s_DebugText;

TEST(HostCore, DebugPrintTakesTextsOfAnyLength) {
    DebugPrint("dropped %d", 1);
    SetDebugOutput([](const char* pText) { s_DebugText += pText; });
    const std::string longText(5000, 'x');
    DebugPrint("%s%d\n", longText.c_str(), 7);
    DebugPrint("%s", "");
    SetDebugOutput(nullptr);
    EXPECT_EQ(s_DebugText, longText + "7\n");
}

} // namespace
