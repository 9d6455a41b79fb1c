#pragma once

class CrashedProcess;

// All that is done about a crash outside of the crashed process: the error log and the dump are written, and the
// reporter is started with both.
void ReportCrash(const CrashedProcess& process);
