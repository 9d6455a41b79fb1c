#pragma once

#include <string>

// The log of the process, or of the one command that it carries out: while it is open, everything that goes to the
// warning and error channels lands in it.
namespace ProcessLog {

// At a plain path in the system's form, since no alias is there yet when a command starts; over what is there.
// `sendWithReport`: a crash report takes the file along. Opening while one is open is an assertion and leaves that one
// in place. False when the file can't be made.
bool Open(const char* pPath, bool sendWithReport);
// With the status of what it is the log of; 0 is without errors. Without a log nothing happens.
void Close(int status);
bool IsOpen();
// The path that it became, which has a number when another process has the asked-for file open. Empty without a log.
std::string GetPath();

} // namespace ProcessLog
