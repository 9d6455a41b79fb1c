#pragma once

class Pipeline;

// Tells the crash filter where the reporter is that the configuration names: "ExePath" of the section "bugreport".
// Without it no reporter is started from now on.
void SetBugReportPath(const Pipeline& pipeline);
