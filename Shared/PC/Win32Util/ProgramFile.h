#pragma once

// Copies a program so that the copy can be run, and written and deleted by its owner. False when there is something of
// the new name already, and when it can't be copied; nothing is left then. Paths are in the system's form.
bool CopyProgram(const char* pFrom, const char* pTo);
