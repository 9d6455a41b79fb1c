#pragma once

#include <string>

#include "Shared/Cross/FileSystem/ByteStream.h"

// What a file holds, as text.
struct DumpOptions {
    bool json = false;
    bool chunks = false;             // every chunk, whatever it means, in place of the content
    bool vertices = false;           // vertices and indices too; only in JSON
    bool keys = false;               // the animations' keys too; only in JSON
    std::string texturesFolder = {}; // native; when given, the textures are written there as pictures
};

// `file` is the name that stands in the output. Throws a std::exception when the file is damaged, newer than this build
// or of a kind that it doesn't know, and when a picture can't be written; nothing was printed then.
std::string DumpFile(ByteStream& stream, const std::string& file, const DumpOptions& options);
