#include "Host/App/TerminalDialogs.h"

#include <gmock/gmock.h>

#include <array>
#include <sstream>

namespace {

constexpr std::array s_OptionControls = {
    DialogControl{ControlKind::CheckBox, 1015, "Export Meshes"},
    DialogControl{ControlKind::CheckBox, 1016, "Export Animation Keys"},
    DialogControl{ControlKind::CheckBox, 1026, "Treat XRef'ed meshes as local"},
    DialogControl{ControlKind::Button, IDOK, "OK"},
    DialogControl{ControlKind::Button, IDCANCEL, "Cancel"},
};
constexpr std::array s_ErrorControls = {
    DialogControl{ControlKind::ListBox, 1019, ""},
    DialogControl{ControlKind::Button, IDOK, "OK"},
};

// The way of the export module's procedures: the fields hold the truth, and each click toggles one.
bool Procedure(HWND hDialog, DialogMessage message, intptr_t param) {
    if (message == DialogMessage::Close || (message == DialogMessage::Command && param == IDCANCEL))
        EndDialog(hDialog, 0);
    else if (message == DialogMessage::Command && param == IDOK)
        EndDialog(hDialog, 1);
    else if (message == DialogMessage::Command)
        CheckDlgButton(hDialog, static_cast<int>(param), !IsDlgButtonChecked(hDialog, static_cast<int>(param)));
    return true;
}

class Dialogs : public testing::Test {
protected:
    Dialogs() : m_pErr(open_memstream(&m_pText, &m_Size)), m_Messages(m_pErr, {}) {
        m_Options.FindControl(1015)->checked = true;
        m_Options.FindControl(1016)->checked = true;
    }
    ~Dialogs() override {
        std::fclose(m_pErr);
        std::free(m_pText);
    }

    std::string GetErr() {
        std::fflush(m_pErr);
        return {m_pText, m_Size};
    }

    // Shows the options dialog with answers typed in, one a line.
    TerminalDialogs Ask(const ExportOptionsAnswer& answer, const std::string& typed) {
        TerminalDialogs dialogs(m_Messages, answer, {});
        m_In.str(typed);
        dialogs.Ask(m_In, m_pErr);
        dialogs.Show(m_Options);
        return dialogs;
    }

    std::array<bool, 3> GetBoxes() {
        return {m_Options.FindControl(1015)->checked, m_Options.FindControl(1016)->checked,
                m_Options.FindControl(1026)->checked};
    }

    char* m_pText = nullptr;
    size_t m_Size = 0;
    std::FILE* m_pErr;
    Messages m_Messages;
    std::istringstream m_In;
    Window m_Options{DialogTemplate{.id = 103, .pTitle = "Options", .controls = s_OptionControls}, nullptr, Procedure};
};

TEST_F(Dialogs, FlagsAnswerTheOptions) {
    for (int bits = 0; bits < 8; ++bits) {
        const ExportOptionsAnswer answer{
            .exportMeshes = (bits & 1) != 0, .exportAnimation = (bits & 2) != 0, .xrefAsLocal = (bits & 4) != 0};
        Window dialog(DialogTemplate{.id = 103, .pTitle = "", .controls = s_OptionControls}, nullptr, Procedure);
        dialog.FindControl(1015)->checked = true;
        dialog.FindControl(1016)->checked = true;
        TerminalDialogs dialogs(m_Messages, answer, {});
        dialogs.Show(dialog);
        EXPECT_EQ(dialog.FindControl(1015)->checked, answer.exportMeshes);
        EXPECT_EQ(dialog.FindControl(1016)->checked, answer.exportAnimation);
        EXPECT_EQ(dialog.FindControl(1026)->checked, answer.xrefAsLocal);
        EXPECT_EQ(dialog.GetResult(), 1);
        EXPECT_FALSE(dialogs.IsCancelled());
    }
}

TEST_F(Dialogs, AnswersPressTheNumberedControls) {
    const TerminalDialogs dialogs = Ask({}, "2\n 3 \nnine\n9\n0\n\n");
    EXPECT_EQ(GetBoxes(), (std::array{true, false, true}));
    EXPECT_EQ(m_Options.GetResult(), 1);
    EXPECT_FALSE(dialogs.IsCancelled());
    EXPECT_THAT(GetErr(), testing::HasSubstr("  2 [x] Export Animation Keys\n"));
    EXPECT_THAT(GetErr(), testing::HasSubstr("  3 [x] Treat XRef'ed meshes as local\n"));
    EXPECT_THAT(GetErr(), testing::HasSubstr("\"nine\" is none of the numbers"));
}

TEST_F(Dialogs, FlagsPresetWhatIsAsked) {
    Ask({.exportMeshes = false}, "4\n");
    EXPECT_EQ(GetBoxes(), (std::array{false, true, false}));
    EXPECT_EQ(m_Options.GetResult(), 1);
}

TEST_F(Dialogs, CancelAndTheEndOfInputCancel) {
    EXPECT_TRUE(Ask({}, "5\n").IsCancelled());
    m_Options = Window(DialogTemplate{.id = 103, .pTitle = "", .controls = s_OptionControls}, nullptr, Procedure);
    m_In.clear();
    EXPECT_TRUE(Ask({}, "1\n").IsCancelled());
}

TEST_F(Dialogs, TheErrorsGoToTheMessagesLineByLine) {
    Window dialog(DialogTemplate{.id = 105, .pTitle = "Errors...", .controls = s_ErrorControls}, nullptr, Procedure);
    dialog.FindControl(1019)->lines = {"Error   : one", "Warning : two"};
    TerminalDialogs dialogs(m_Messages, {}, {});
    m_In.str("5\n");
    dialogs.Ask(m_In, m_pErr); // asks for options alone
    dialogs.Show(dialog);
    EXPECT_EQ(GetErr(), "Error   : one\nWarning : two\n");
    EXPECT_EQ(dialog.GetResult(), 1);
}

} // namespace
