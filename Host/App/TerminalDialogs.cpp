#include "Host/App/TerminalDialogs.h"

#include <charconv>
#include <string>

namespace {

constexpr int s_OptionsDialog = 103;
constexpr int s_ExportMeshes = 1015;
constexpr int s_ExportAnimation = 1016;
constexpr int s_XRefAsLocal = 1026;

bool CanBePressed(const WindowControl& control) {
    return control.kind == ControlKind::CheckBox || control.kind == ControlKind::Button;
}

std::string Trimmed(const std::string& text) {
    const size_t start = text.find_first_not_of(" \t\r");
    return start == std::string::npos ? "" : text.substr(start, text.find_last_not_of(" \t\r") - start + 1);
}

// The control that an answer means: its number in the list, from 1. Null when there is none.
const WindowControl* FindByNumber(Window& dialog, const std::string& answer) {
    int number = 0;
    const auto [pEnd, error] = std::from_chars(answer.data(), answer.data() + answer.size(), number);
    if (error != std::errc() || pEnd != answer.data() + answer.size())
        return nullptr;
    for (const WindowControl& control : dialog.GetControls())
        if (CanBePressed(control) && --number == 0)
            return &control;
    return nullptr;
}

} // namespace

void TerminalDialogs::Ask(std::istream& in, std::FILE* pOut) {
    m_pIn = &in;
    m_pOut = pOut;
}

void TerminalDialogs::Show(Window& dialog) {
    if (m_BeforeShow)
        m_BeforeShow();
    for (const WindowControl& control : dialog.GetControls())
        if (control.kind == ControlKind::ListBox)
            m_Messages.PrintList(control.lines);
    if (dialog.GetTemplateId() == s_OptionsDialog) {
        Preset(dialog);
        if (m_pIn)
            AskInTerminal(dialog);
    }
    if (!dialog.IsEnded())
        dialog.Press(IDOK);
    if (dialog.GetTemplateId() == s_OptionsDialog)
        m_Cancelled = dialog.IsEnded() && dialog.GetResult() == 0;
}

void TerminalDialogs::Preset(Window& dialog) const {
    const std::pair<int, bool> wanted[] = {{s_ExportMeshes, m_Answer.exportMeshes},
                                           {s_ExportAnimation, m_Answer.exportAnimation},
                                           {s_XRefAsLocal, m_Answer.xrefAsLocal}};
    for (const auto& [id, checked] : wanted) {
        const WindowControl* pControl = dialog.FindControl(id);
        if (pControl && pControl->checked != checked)
            dialog.Press(id);
    }
}

void TerminalDialogs::AskInTerminal(Window& dialog) const {
    while (!dialog.IsEnded()) {
        ListControls(dialog);
        std::string answer;
        if (!std::getline(*m_pIn, answer)) {
            // Nobody is there any more, which is no consent.
            std::fputc('\n', m_pOut);
            dialog.Close();
            return;
        }
        answer = Trimmed(answer);
        if (answer.empty())
            dialog.Press(IDOK);
        else if (const WindowControl* pControl = FindByNumber(dialog, answer))
            dialog.Press(pControl->id);
        else
            std::fprintf(m_pOut, "\"%s\" is none of the numbers\n", answer.c_str());
    }
}

void TerminalDialogs::ListControls(Window& dialog) const {
    std::fprintf(m_pOut, "%s\n", dialog.GetTitle().c_str());
    int number = 0;
    for (const WindowControl& control : dialog.GetControls()) {
        if (control.kind == ControlKind::Label)
            std::fprintf(m_pOut, "      %s\n", control.text.c_str());
        if (!CanBePressed(control))
            continue;
        const char* pBox = control.kind == ControlKind::Button ? "   " : control.checked ? "[x]" : "[ ]";
        std::fprintf(m_pOut, "  %d %s %s\n", ++number, pBox, control.text.c_str());
    }
    std::fputs("Number, or Enter for OK: ", m_pOut);
    std::fflush(m_pOut);
}
