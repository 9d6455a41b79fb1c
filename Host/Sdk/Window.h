#pragma once

#include "Host/Sdk/Dialog.h"

#include <string>
#include <utility>
#include <vector>

// Dialogs and windows, seen from the host and from tests. A module doesn't include this header.

// A control of an open dialog.
struct WindowControl {
    ControlKind kind = ControlKind::Label;
    int id = 0;
    std::string text = {};
    bool checked = false;
    std::vector<std::string> lines = {}; // of a list box
};

// The host's main window, which has neither controls nor a procedure, or an open dialog.
class Window {
public:
    explicit Window(std::string title) : m_Title(std::move(title)) {}
    Window(const DialogTemplate& dialog, HWND hParent, DialogProc procedure);

    const std::string& GetTitle() const { return m_Title; }
    int GetTemplateId() const { return m_TemplateId; }
    HWND GetParent() const { return m_hParent; }

    std::vector<WindowControl>& GetControls() { return m_Controls; }
    // The first control of that id; null when there is none.
    WindowControl* FindControl(int id);

    // What a user can do. Press is a click on a check box or button: false, and nothing happens, when the dialog has no
    // such control or has ended. Close answers false when it had ended before.
    bool Press(int id);
    bool Close();

    bool IsEnded() const { return m_Ended; }
    intptr_t GetResult() const { return m_Result; }
    // The first call counts.
    void End(intptr_t result);

    void SetUserWord(intptr_t word) { m_UserWord = word; }
    intptr_t GetUserWord() const { return m_UserWord; }

    // True once the window was centred; on which window (null: the screen).
    bool IsCentred() const { return m_Centred; }
    HWND GetCentre() const { return m_hCentre; }
    void CentreOn(HWND hWindow);

    // Hands a message to the procedure.
    bool Send(DialogMessage message, intptr_t param);

private:
    std::string m_Title;
    int m_TemplateId = 0;
    HWND m_hParent = nullptr;
    DialogProc m_Procedure = nullptr;
    std::vector<WindowControl> m_Controls;
    intptr_t m_UserWord = 0;
    intptr_t m_Result = 0;
    bool m_Ended = false;
    bool m_Centred = false;
    HWND m_hCentre = nullptr;
};

// Shows open dialogs to whoever answers them: a terminal, a command line's flags, a test.
class DialogShower {
public:
    virtual ~DialogShower();

    // Called once a dialog has had its Init. Presses controls and returns when the dialog has ended; one that is still
    // open then is closed.
    virtual void Show(Window& dialog) = 0;
};

// Installs the shower, borrowed, null for none; returns the one before.
DialogShower* SetDialogShower(DialogShower* pShower);
