#pragma once

#include <cstdint>
#include <functional>
#include <string>

// Files that are written and burnt beside a merge. The pipeline configuration is up.

// The changelist that all tools share.
inline constexpr const char* s_ToolsChangelist = "PVX Export Changes";

// Makes a file writable under revision control, in that changelist. False when it can't be, and when the
// configuration names no server; the changelist is 0 until it was found or made.
bool MergeBurnOpenFile(int32_t& changelist, const char* pFilename);

// Burns one file in a burner process of its own and waits for it. False when the burn came to no result. What the
// burner complains of goes to the log.
bool MergeBurnFile(const char* pFilename, int32_t changelist);

// Makes all folders on the way to a file. That one can't be made shows when the file is written.
void MakeDirectoryPath(const char* pFilename);

// Tells the log what is done next, "MERGE -- <step>: '<file>'". Hosts show it to those who wait.
void LogMergeStep(const std::string& step, const std::string& file);

// Opens a file under revision control, has it saved by its alias path and burns it; what says what it is, "shared
// texture". Throws std::runtime_error when it can't be opened. When it can't be burnt, throws the bare text of the
// message, a const char*, which is no standard exception: it passes the command's own guard by and reaches the host's
// script layer, with the services up, as scripts expect after a burn that failed. Whether it could be saved, the burn
// shows.
void MergeBurnWrite(const std::string& file, const char* pWhat, const std::function<void(const char* pPath)>& save);
