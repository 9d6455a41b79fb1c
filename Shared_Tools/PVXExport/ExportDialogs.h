#pragma once

#include "Host/Sdk/Types.h"

struct ExportContext;

namespace ExportDialogs {

// Has the user choose what is exported. False when the user cancelled.
bool AskOptions(HINSTANCE handle, HWND hParent, ExportContext& context);

void ShowAbout(HINSTANCE handle, HWND hParent);

} // namespace ExportDialogs
