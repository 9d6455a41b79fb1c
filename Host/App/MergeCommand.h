#pragma once

#include "Host/App/CommandLine.h"
#include "Host/App/Messages.h"
#include "Host/App/Progress.h"

// What the host adds to the module's merge.

// Files that can't be read or lie in no project, and an output that is an input or no model, are refused ahead of the
// work: throws a HostError with status 2.
void CheckMergeInputs(const MergeArguments& arguments);

// Gathers, while it lives, what a merge tells the log for people, and shows how far it is. One at a time.
class MergeNotes {
public:
    // Borrowed.
    explicit MergeNotes(Progress& progress);
    ~MergeNotes();
    MergeNotes(const MergeNotes&) = delete;
    MergeNotes& operator=(const MergeNotes&) = delete;

    // The merged file and its size, and what went wrong by the way: in what the animations' bones differ from the
    // model's, which shared textures and patterns weren't saved or burned, which layers weren't read.
    void PrintSummary(const MergeArguments& arguments, const Messages& messages) const;
    // The same for a merge that failed, with what the log gave as the reason. `silent` when the merge has said nothing
    // itself.
    void PrintFailure(const MergeArguments& arguments, bool silent, const Messages& messages) const;
};
