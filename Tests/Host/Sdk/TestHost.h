#pragma once

#include "Host/Sdk/Listener.h"
#include "Host/Sdk/Window.h"

#include <string>
#include <utility>
#include <vector>

// What a test puts in the host's place: someone who answers dialogs, and a listener that remembers.

// Presses the given controls in every dialog that is shown while the object lives, and remembers each dialog as it was
// when it came up. A dialog that is still open after that is closed.
class DialogAnswers : public DialogShower {
public:
    explicit DialogAnswers(std::vector<int> presses = {}) : m_Presses(std::move(presses)) {
        m_pBefore = SetDialogShower(this);
    }
    ~DialogAnswers() override { SetDialogShower(m_pBefore); }

    void Show(Window& dialog) override {
        m_Shown.push_back(dialog);
        for (const int id : m_Presses)
            dialog.Press(id);
    }

    void SetPresses(std::vector<int> presses) { m_Presses = std::move(presses); }
    // Copies: their procedures are no longer to be called.
    std::vector<Window>& GetShown() { return m_Shown; }

private:
    std::vector<int> m_Presses;
    std::vector<Window> m_Shown;
    DialogShower* m_pBefore = nullptr;
};

// The listener of the calling thread while the object lives.
class ListenerCapture : public CharStream {
public:
    ListenerCapture() : m_pBefore(std::exchange(thread_locals().current_stdout, this)) {}
    ~ListenerCapture() override { thread_locals().current_stdout = m_pBefore; }

    void puts(const char* pText) override { m_Text += pText; }
    const std::string& GetText() const { return m_Text; }

private:
    CharStream* m_pBefore;
    std::string m_Text;
};
