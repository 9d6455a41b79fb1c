#include "Shared_Tools/PVXExport/PVXErrors.h"

#include <bit>
#include <cstdarg>
#include <cstdio>

#include "Host/Sdk/Dialog.h"
#include "Host/Sdk/Interface.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"

namespace {

// Both are ten characters wide.
constexpr const char* s_ErrorPrefix = "Error   : ";
constexpr const char* s_WarningPrefix = "Warning : ";

std::string Format(const char* pPrefix, const char* pFormat, va_list arguments) {
    va_list counting;
    va_copy(counting, arguments);
    const int length = std::vsnprintf(nullptr, 0, pFormat, counting);
    va_end(counting);
    std::string text = pPrefix;
    if (length <= 0)
        return text;
    const size_t prefixLength = text.size();
    text.resize(prefixLength + static_cast<size_t>(length) + 1); // with room for the closing 0
    std::vsnprintf(text.data() + prefixLength, static_cast<size_t>(length) + 1, pFormat, arguments);
    text.pop_back();
    return text;
}

void FillErrorsDialog(HWND hDialog, const std::vector<std::string>& messages) {
    CenterWindow(hDialog, GetParent(hDialog));
    for (const std::string& message : messages)
        AddListString(hDialog, ID_ERRORS_LIST, message.c_str());
}

bool ErrorsDialogProc(HWND hDialog, DialogMessage message, intptr_t param) {
    switch (message) {
    case DialogMessage::Init:
        FillErrorsDialog(hDialog, *std::bit_cast<const std::vector<std::string>*>(param));
        return true;
    case DialogMessage::Command:
        if (param != IDOK)
            return false;
        EndDialog(hDialog, IDOK);
        return true;
    case DialogMessage::Close:
        EndDialog(hDialog, IDCANCEL);
        return true;
    }
    return false;
}

} // namespace

std::unique_ptr<PVXErrors> PVXErrors::s_pInstance;

void PVXErrors::Create(HINSTANCE hInstance, Interface* pInterface) {
    dbAssertText(!s_pInstance, "s_pInstance == NULL");
    s_pInstance.reset(new PVXErrors(hInstance, pInterface)); // the constructor is private
}

void PVXErrors::Destroy() {
    dbAssertText(s_pInstance, "s_pInstance");
    s_pInstance.reset();
}

PVXErrors& PVXErrors::Get() {
    dbAssertText(s_pInstance, "s_pInstance");
    if (!s_pInstance)
        Create(nullptr, nullptr);
    return *s_pInstance;
}

void PVXErrors::Error(const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    m_Messages.push_back(Format(s_ErrorPrefix, pFormat, arguments));
    va_end(arguments);
    ++m_ErrorCount;
}

void PVXErrors::Warning(const char* pFormat, ...) {
    va_list arguments;
    va_start(arguments, pFormat);
    m_Messages.push_back(Format(s_WarningPrefix, pFormat, arguments));
    va_end(arguments);
    ++m_WarningCount;
}

void PVXErrors::ShowDialog() const {
    if (m_Messages.empty())
        return;
    const HWND hParent = m_Interface ? m_Interface->GetMAXHWnd() : nullptr;
    DialogBoxParam(m_hInstance, IDD_ERRORS, hParent, ErrorsDialogProc, std::bit_cast<intptr_t>(&m_Messages));
}

void PVXErrors::Clear() {
    m_Messages.clear();
    m_ErrorCount = 0;
    m_WarningCount = 0;
}
