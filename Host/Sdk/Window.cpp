#include "Host/Sdk/Window.h"

#include <algorithm>

namespace {

DialogShower* s_pShower = nullptr;

} // namespace

Window::Window(const DialogTemplate& dialog, HWND hParent, DialogProc procedure)
    : m_Title(dialog.pTitle), m_TemplateId(dialog.id), m_hParent(hParent), m_Procedure(procedure) {
    m_Controls.reserve(dialog.controls.size());
    for (const DialogControl& control : dialog.controls)
        m_Controls.push_back(
            {.kind = control.kind, .id = control.id, .text = control.pText, .checked = false, .lines = {}});
}

WindowControl* Window::FindControl(int id) {
    const auto it = std::ranges::find(m_Controls, id, &WindowControl::id);
    return it != m_Controls.end() ? &*it : nullptr;
}

bool Window::Press(int id) {
    const WindowControl* pControl = FindControl(id);
    if (m_Ended || !pControl || (pControl->kind != ControlKind::CheckBox && pControl->kind != ControlKind::Button))
        return false;
    Send(DialogMessage::Command, id);
    return true;
}

bool Window::Close() {
    if (m_Ended)
        return false;
    Send(DialogMessage::Close, 0);
    return true;
}

void Window::End(intptr_t result) {
    if (m_Ended)
        return;
    m_Ended = true;
    m_Result = result;
}

void Window::CentreOn(HWND hWindow) {
    m_Centred = true;
    m_hCentre = hWindow;
}

bool Window::Send(DialogMessage message, intptr_t param) { return m_Procedure && m_Procedure(this, message, param); }

DialogShower* SetDialogShower(DialogShower* pShower) { return std::exchange(s_pShower, pShower); }

intptr_t DialogBoxParam(HINSTANCE handle, int templateId, HWND hParent, DialogProc procedure, intptr_t initParam) {
    const DialogTemplate* pTemplate = FindDialog(handle, templateId);
    if (!pTemplate)
        return -1;
    Window dialog(*pTemplate, hParent, procedure);
    dialog.Send(DialogMessage::Init, initParam);
    if (!dialog.IsEnded() && s_pShower)
        s_pShower->Show(dialog);
    dialog.Close();
    return dialog.GetResult();
}

void EndDialog(HWND hDialog, intptr_t result) {
    if (hDialog)
        hDialog->End(result);
}

void SetUserWord(HWND hWindow, intptr_t word) {
    if (hWindow)
        hWindow->SetUserWord(word);
}

intptr_t GetUserWord(HWND hWindow) { return hWindow ? hWindow->GetUserWord() : 0; }

HWND GetParent(HWND hWindow) { return hWindow ? hWindow->GetParent() : nullptr; }

void CenterWindow(HWND hChild, HWND hParent) {
    if (hChild)
        hChild->CentreOn(hParent);
}

void CheckDlgButton(HWND hDialog, int id, bool checked) {
    if (WindowControl* pControl = hDialog ? hDialog->FindControl(id) : nullptr)
        pControl->checked = checked;
}

bool IsDlgButtonChecked(HWND hDialog, int id) {
    const WindowControl* pControl = hDialog ? hDialog->FindControl(id) : nullptr;
    return pControl && pControl->checked;
}

void AddListString(HWND hDialog, int id, const char* pText) {
    if (WindowControl* pControl = hDialog ? hDialog->FindControl(id) : nullptr)
        pControl->lines.emplace_back(pText);
}
