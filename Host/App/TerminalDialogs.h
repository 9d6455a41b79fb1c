#pragma once

#include "Host/App/Messages.h"
#include "Host/Sdk/Window.h"

#include <cstdio>
#include <functional>
#include <istream>

// The check boxes of the export module's options dialog, and how a command line wants them.
struct ExportOptionsAnswer {
    bool exportMeshes = true;
    bool exportAnimation = true;
    bool xrefAsLocal = false;
};

// Shows dialogs without windows. The options dialog is answered from the command line, or asked in the terminal; the
// lines of a dialog's lists go to the messages; every other dialog is closed by its OK.
class TerminalDialogs : public DialogShower {
public:
    // `messages` is borrowed. `beforeShow`, which may be empty, runs ahead of each dialog.
    TerminalDialogs(const Messages& messages, const ExportOptionsAnswer& answer, std::function<void()> beforeShow)
        : m_Messages(messages), m_Answer(answer), m_BeforeShow(std::move(beforeShow)) {}

    // From now on the options are asked for: controls are listed on `pOut`, answers read from `in`, both borrowed.
    void Ask(std::istream& in, std::FILE* pOut);

    void Show(Window& dialog) override;

    // Whether the user has cancelled the options dialog.
    bool IsCancelled() const { return m_Cancelled; }

private:
    void Preset(Window& dialog) const;
    void AskInTerminal(Window& dialog) const;
    void ListControls(Window& dialog) const;

    const Messages& m_Messages;
    ExportOptionsAnswer m_Answer;
    std::function<void()> m_BeforeShow;
    std::istream* m_pIn = nullptr;
    std::FILE* m_pOut = nullptr;
    bool m_Cancelled = false;
};
