#pragma once

class CrashedProcess;

// What happened, in the words of the error log; "Unknown exception type" for what has none.
const char* GetExceptionName(const CrashedProcess& process);

// Whether an address was read or written that must not be; the stack's end isn't meant.
bool IsAccessViolation(const CrashedProcess& process);
