#pragma once

#include <cstdint>
#include <string>

// Files that are written and burnt beside a merge. The pipeline configuration is up.

// Makes a file writable under revision control, in the changelist of all tools. False when it can't be, and when the
// configuration names no server; the changelist is 0 until it was found or made.
bool MergeBurnOpenFile(int32_t& changelist, const char* pFilename);

// Burns one file in a burner process of its own and waits for it. False when the burn came to no result. What the
// burner complains of goes to the log.
bool MergeBurnFile(const char* pFilename, int32_t changelist);

// Makes all folders on the way to a file. That one can't be made shows when the file is written.
void MakeDirectoryPath(const char* pFilename);

// Ends a merge by a bare text, which is no standard exception: it passes the command's own guard by and reaches the
// host's script layer. Scripts rely on the services being up then, as after any burn that failed.
[[noreturn]] void ThrowText(const std::string& text);
