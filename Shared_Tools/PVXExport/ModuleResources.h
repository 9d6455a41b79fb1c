// The module's texts and dialogs, by number.
#pragma once

#include "Host/Sdk/Types.h"

enum ModuleString : unsigned {
    IDS_TITLE = 1,
    IDS_COPYRIGHT = 2,
    IDS_CLASS_NAME = 3,
    IDS_CATEGORY = 4,
    IDS_LIB_DESCRIPTION = 5,
    IDS_AUTHOR = 6,
    IDS_LONG_DESC = 7,
    IDS_SHORT_DESC = 8,
};

enum ModuleDialog : int {
    IDD_ABOUT = 102,
    IDD_OPTIONS = 103,
    IDD_ERRORS = 105,
    IDD_IMPORT_OPTIONS = 106, // shown by nothing
};

enum ModuleControl : int {
    ID_EXPORT_MESHES = 1015,
    ID_EXPORT_ANIM_KEYS = 1016,
    ID_ERRORS_LIST = 1019,
    ID_XREF_AS_LOCAL = 1026,
};

// Puts the tables under the handle, once for each time that the host has loaded the module.
void RegisterModuleResources(HINSTANCE handle);
