#pragma once

struct CrashRecord;

// Catches what the processor and the system end a process for: bad accesses, arithmetic, illegal instructions,
// breakpoints, abort. In the crashed process itself only what a signal handler may do is done: it runs a function,
// starts the reporting program, sends it the record with the stack, waits until that is done, and ends by its signal.
namespace CrashTrap {

// Fills in the record's facts of the process. `pBeforeReport` runs on the crashing thread, where nothing may be relied
// on. The record and what is asked of it live as long as the process. False when the system refuses. A thread's
// exhausted stack is caught on the calling thread only: it alone gets a stack to handle that on.
bool Install(CrashRecord& record, void (*pBeforeReport)());

// From within pBeforeReport: calls a function that may crash. False when it did; what it held is then lost.
bool RunGuarded(void (*pFunction)(void* pUser), void* pUser);

} // namespace CrashTrap
