#pragma once

#include "Shared/Cross/FileSystem/ByteStream.h"

// A file that is being written anew, under a name that may be taken. Only a finished one takes the place of what stands
// there; one that goes unfinished leaves nothing of itself.
class FileReplacement {
public:
    virtual ~FileReplacement() = default;

    // In Mode_Write, good until Finish.
    virtual ByteStream& GetStream() = 0;
    // Closes the stream and puts the file under its name. False, which is logged, when not all that was written has got
    // to the system or the file can't be put there; it is then as if it had gone unfinished.
    virtual bool Finish() = 0;
};
