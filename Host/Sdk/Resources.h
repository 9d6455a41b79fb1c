#pragma once

#include "Host/Sdk/Types.h"

#include <span>

// The resources of a module: texts and dialog templates by number. A module registers its tables under its handle when
// it is loaded; the tables themselves stay the module's, and must live until they are unregistered.

struct StringResource {
    unsigned id = 0;
    const char* pText = nullptr;
};

enum class ControlKind { Label, CheckBox, Button, ListBox };

struct DialogControl {
    ControlKind kind = ControlKind::Label;
    int id = 0; // what the procedure is told; -1 for what is never asked for
    const char* pText = "";
};

struct DialogTemplate {
    int id = 0;
    const char* pTitle = "";
    std::span<const DialogControl> controls = {}; // in tab order
};

// A later table of a handle adds to the earlier ones; the first one that has an id answers for it.
void RegisterStrings(HINSTANCE handle, std::span<const StringResource> strings);
void RegisterDialogs(HINSTANCE handle, std::span<const DialogTemplate> dialogs);
// Forgets all tables of the handle. The host does it when it lets go of a module.
void UnregisterResources(HINSTANCE handle);

// Copies the text into the buffer, cut to fit, with a closing 0. Returns its length; -1, with an empty buffer, when
// there is no such text.
int LoadString(HINSTANCE handle, unsigned id, std::span<char> buffer);

// Null when there is none.
const DialogTemplate* FindDialog(HINSTANCE handle, int id);
