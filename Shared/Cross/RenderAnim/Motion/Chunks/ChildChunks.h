#pragma once

#include <cstdint>

#include "Shared/Cross/FileSystem/Chunky.h"

namespace ra {

inline constexpr size_t s_NameMinBytes = 4; // an empty name

// Each part of a motion side is a folder of data chunks of one id, one for each object.

template <class List, class WriteChild>
void WriteChildren(Chunky& chunky, uint32_t folder, uint32_t version, const List& list, WriteChild write) {
    chunky.BeginFolder(folder, version);
    for (uint32_t i = 0; i < list.GetCount(); ++i)
        write(list[i]);
    chunky.EndChunk();
}

// Reads up to the first child that is something else, and gives that one's id; 0 when all were read.
template <class ReadChild>
uint32_t ReadChildren(Chunky& chunky, uint32_t folder, uint32_t version, uint32_t child, ReadChild read) {
    uint32_t foreign = 0;
    chunky.EnterFolder(folder, version);
    for (ChunkInfo info; chunky.NextChunk(info);)
        if (foreign == 0 && info.kind == ChunkKind_Data && info.id == child)
            read();
        else if (foreign == 0)
            foreign = info.id;
    chunky.EndChunk();
    return foreign;
}

} // namespace ra
