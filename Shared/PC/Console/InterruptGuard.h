#pragma once

#include <string>

// As long as it lives, a user's interruption of the process (Ctrl-C, a polite kill, a closed terminal) takes away a
// file that is just being written, and then ends the process as it would have without a guard. That is the unfinished
// file beside it, and the file itself if it is new or was written in place; one that has been replaced is whole. What
// nobody has touched since the guard was made stays as it is. A file that grows over the user's limit is a failed write
// meanwhile, and doesn't end the process. One guard at a time; a second one guards nothing.
class InterruptGuard {
public:
    // The paths are in the machine's own form. The files may not be there yet.
    InterruptGuard(const std::string& nativePath, const std::string& nativeUnfinished);
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

    // Whether the file was made or written since the guard was made.
    bool IsTouched() const;
};
