#pragma once

enum class ProgramCopy {
    Made,
    NameTaken, // there is something of the new name already
    Failed,
};

// Copies a program so that the copy can be run, and written and deleted by its owner. Without success nothing of it is
// left. Paths are in the system's form.
ProgramCopy CopyProgram(const char* pFrom, const char* pTo);
