#include "Shared_Tools/PVXExport/Commands/LocalBurnQuestion.h"

#include "Host/Sdk/Dialog.h"
#include "Shared_Tools/Burner/BurnerProcess.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"

namespace {

constexpr int s_QuestionDialog = 120;
constexpr int s_NoId = -1;
constexpr int s_Yes = 6;
constexpr int s_No = 7;

// With the texts of the one question that there is.
DialogControl s_Controls[] = {
    {ControlKind::Label, s_NoId, ""},
    {ControlKind::Button, s_Yes, "Yes"},
    {ControlKind::Button, s_No, "No"},
};
DialogTemplate s_Dialog{.id = s_QuestionDialog, .controls = s_Controls};

bool QuestionProc(HWND hDialog, DialogMessage message, intptr_t param) {
    if (message == DialogMessage::Command)
        EndDialog(hDialog, param);
    else if (message == DialogMessage::Close)
        EndDialog(hDialog, s_No);
    return true;
}

bool Ask(const char* pTitle, const char* pText) {
    const HINSTANCE handle = PVXUtil::GetDLLInstance();
    s_Dialog.pTitle = pTitle;
    s_Controls[0].pText = pText;
    if (!FindDialog(handle, s_QuestionDialog))
        RegisterDialogs(handle, {&s_Dialog, 1});
    return DialogBoxParam(handle, s_QuestionDialog, nullptr, QuestionProc, 0) == s_Yes;
}

} // namespace

void LocalBurnQuestion::Install() { BurnerProcess::SetLocalQuestion(Ask); }
