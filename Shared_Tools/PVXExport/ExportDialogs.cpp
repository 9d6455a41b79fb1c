#include "Shared_Tools/PVXExport/ExportDialogs.h"

#include <bit>

#include "Host/Sdk/Dialog.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"

namespace {

struct OptionBox {
    int id;
    bool ExportContext::*pField;
};

constexpr OptionBox s_OptionBoxes[] = {
    {ID_EXPORT_MESHES, &ExportContext::m_ExportMeshes},
    {ID_EXPORT_ANIM_KEYS, &ExportContext::m_ExportAnimKeys},
    {ID_XREF_AS_LOCAL, &ExportContext::m_XRefAsLocal},
};

void InitOptions(HWND hDialog, intptr_t contextWord) {
    SetUserWord(hDialog, contextWord);
    CenterWindow(hDialog, GetParent(hDialog));
    const auto& context = *std::bit_cast<const ExportContext*>(contextWord);
    for (const OptionBox& box : s_OptionBoxes)
        CheckDlgButton(hDialog, box.id, context.*box.pField);
}

// The fields hold the truth; the boxes only show it.
bool UseOptionsControl(HWND hDialog, intptr_t id) {
    if (id == IDOK || id == IDCANCEL) {
        EndDialog(hDialog, id == IDOK ? 1 : 0);
        return true;
    }
    auto& context = *std::bit_cast<ExportContext*>(GetUserWord(hDialog));
    for (const OptionBox& box : s_OptionBoxes)
        if (box.id == id) {
            context.*box.pField = !(context.*box.pField);
            CheckDlgButton(hDialog, box.id, context.*box.pField);
            return true;
        }
    return false;
}

bool OptionsDialogProc(HWND hDialog, DialogMessage message, intptr_t param) {
    switch (message) {
    case DialogMessage::Init:
        InitOptions(hDialog, param);
        return true;
    case DialogMessage::Command:
        return UseOptionsControl(hDialog, param);
    case DialogMessage::Close:
        EndDialog(hDialog, 0);
        return true;
    }
    return false;
}

bool AboutDialogProc(HWND hDialog, DialogMessage message, intptr_t param) {
    if (message == DialogMessage::Init)
        return true;
    if (message == DialogMessage::Command && param != IDOK)
        return false;
    EndDialog(hDialog, IDOK);
    return true;
}

} // namespace

namespace ExportDialogs {

bool AskOptions(HINSTANCE handle, HWND hParent, ExportContext& context) {
    return DialogBoxParam(handle, IDD_OPTIONS, hParent, OptionsDialogProc, std::bit_cast<intptr_t>(&context)) != 0;
}

void ShowAbout(HINSTANCE handle, HWND hParent) { DialogBoxParam(handle, IDD_ABOUT, hParent, AboutDialogProc, 0); }

} // namespace ExportDialogs
