#pragma once

#include <cstdint>
#include <string>

class Chunky;

// The chunks that belong to the container rather than to an asset.
enum ChunkyReservedType : uint32_t {
    ChunkyReserved_BuildLog = 0,
    ChunkyReserved_Comment = 1,
    ChunkyReserved_FileDependency = 2,
    ChunkyReserved_FileBurnInfo = 3,
};

// The chunk id of one; '0000' for any other value, which is a mistake.
uint32_t GetChunkyReservedCode(ChunkyReservedType type);

// Who made a final file, and when: the first chunk of the file if the one who saves has such a record. What the two
// strings and the number mean is up to the burner.
struct FileBurnInfo {
    // The date is now, in local time, or that of the environment's SOURCE_DATE_EPOCH.
    FileBurnInfo();

    std::string first;
    uint32_t number = 0;
    std::string second;
    std::string date;
};

void WriteFileBurnInfo(Chunky& chunky, const FileBurnInfo& info);
// Throws Chunky::Exception when the chunk isn't there and ByteStream::Exception for a string of more than 1023
// characters.
FileBurnInfo ReadFileBurnInfo(Chunky& chunky);
