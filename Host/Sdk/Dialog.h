#pragma once

#include "Host/Sdk/Resources.h"
#include "Host/Sdk/Types.h"

// Modal dialogs, seen from the module: a template from its resources, and a procedure that is told what happens.

enum class DialogMessage {
    Init,    // once, before anything is shown; `param` is the word given to DialogBoxParam
    Command, // the control `param` was used
    Close,   // the user wants the dialog gone
};

// Ids of the usual buttons.
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;

// Answers whether it has dealt with the message.
using DialogProc = bool (*)(HWND hDialog, DialogMessage message, intptr_t param);

// Shows a dialog and returns when EndDialog was called, with its result. -1 when the module has no such template.
// Where nobody can be asked, the dialog is told to close at once; if it stays open all the same, the result is 0.
intptr_t DialogBoxParam(HINSTANCE handle, int templateId, HWND hParent, DialogProc procedure, intptr_t initParam);
void EndDialog(HWND hDialog, intptr_t result);

// One word of a window that belongs to its user; 0 at first.
void SetUserWord(HWND hWindow, intptr_t word);
intptr_t GetUserWord(HWND hWindow);

HWND GetParent(HWND hWindow);
// Centres a dialog on its parent; without one, on the screen.
void CenterWindow(HWND hChild, HWND hParent);

// The controls of a dialog, by id; one that isn't there is left alone.
void CheckDlgButton(HWND hDialog, int id, bool checked);
bool IsDlgButtonChecked(HWND hDialog, int id);
// Adds a line at the end of a list box.
void AddListString(HWND hDialog, int id, const char* pText);
