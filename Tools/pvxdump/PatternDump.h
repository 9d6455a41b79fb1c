#pragma once

#include <cstdint>
#include <string>

class Chunky;
struct DumpOptions;

// What a team colour pattern's file holds. With a folder for textures each layer is written there as a grey picture,
// white where its colour is strongest, and the dirt image as it is. Throws as DumpFile does.
std::string DumpPattern(Chunky& chunky, const std::string& file, uint32_t size, const DumpOptions& options);
