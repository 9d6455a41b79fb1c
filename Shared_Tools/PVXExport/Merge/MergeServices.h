#pragma once

// What the load and save code stands on while a merge runs: log, aliases, pipeline configuration, device, inventory.
// A merge that fails without an exception leaves them up, for scripts that go on from there; ombl_burner_reset takes
// them down, all but the log.

// Brings them up for the project that holds the model file, which is a full path in the system's form. The log lies
// beside the model file. False leaves up what has come up by then, and tells only the log. Services that are up
// already are a mistake, the pipeline's "s_instance == NULL".
bool AniMergeStartup(const char* pModelFile);

// Takes down what is up. The code goes to the log: 0 after success.
void AniMergeShutdown(int exitCode);
