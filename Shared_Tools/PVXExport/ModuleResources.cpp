#include "Shared_Tools/PVXExport/ModuleResources.h"

#include "Host/Sdk/Dialog.h"
#include "Host/Sdk/Resources.h"

namespace {

constexpr int s_Unnamed = -1;

constexpr StringResource s_Strings[] = {
    {IDS_TITLE, "PVX Scene Exporter for the Asset Pipeline"},
    {IDS_COPYRIGHT, "Copyright the PVX authors"},
    {IDS_CLASS_NAME, "PVX Exporter"},
    {IDS_CATEGORY, "Scene Exporter"},
    {IDS_LIB_DESCRIPTION, "PVX Exporter (the PVX authors)"},
    {IDS_AUTHOR, "the PVX authors"},
    {IDS_LONG_DESC, "PVX Exporter"},
    {IDS_SHORT_DESC, "PVX Exporter"},
};

constexpr DialogControl s_AboutControls[] = {
    {ControlKind::Label, s_Unnamed, "PVX Exporter"},
    {ControlKind::Button, IDOK, "OK"},
};

constexpr DialogControl s_OptionsControls[] = {
    {ControlKind::CheckBox, ID_EXPORT_MESHES, "Export Meshes"},
    {ControlKind::CheckBox, ID_EXPORT_ANIM_KEYS, "Export Animation Keys"},
    {ControlKind::CheckBox, ID_XREF_AS_LOCAL, "Treat XRef'ed meshes as local"},
    {ControlKind::Button, IDOK, "OK"},
    {ControlKind::Button, IDCANCEL, "Cancel"},
};

constexpr DialogControl s_ErrorsControls[] = {
    {ControlKind::ListBox, ID_ERRORS_LIST, ""},
    {ControlKind::Button, IDOK, "OK"},
};

constexpr DialogControl s_ImportControls[] = {
    {ControlKind::Label, s_Unnamed, "Import Animation:"},
};

const DialogTemplate s_Dialogs[] = {
    {IDD_ABOUT, "About PVX Exporter", s_AboutControls},
    {IDD_OPTIONS, "Vorlo Mesh Export", s_OptionsControls},
    {IDD_ERRORS, "Errors...", s_ErrorsControls},
    {IDD_IMPORT_OPTIONS, "Import Options", s_ImportControls},
};

} // namespace

void RegisterModuleResources(HINSTANCE handle) {
    // The host forgets a module's tables when it lets go of the module, so that these may have to go in once more.
    if (FindDialog(handle, IDD_OPTIONS))
        return;
    RegisterStrings(handle, s_Strings);
    RegisterDialogs(handle, s_Dialogs);
}
