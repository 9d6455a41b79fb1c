#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Shared/Cross/TeamColour/Pattern.h"

class Chunky;
struct DumpOptions;

// A layer of a pattern, as it is shown.
struct PatternLayer {
    std::string name;
    uint64_t coveredPixels = 0; // where its colour applies at all
    double mean = 0;            // strength over all pixels, 0 to 1
    std::string file;           // the picture that was written; empty without
};

// What a team colour pattern's file holds.
struct PatternContent {
    Pattern pattern;
    std::vector<PatternLayer> layers;
    std::string dirtFile; // the dirt image's picture that was written; empty without
};

// `file` is what the pictures are named after. With a folder for textures each layer is written there as a grey
// picture, white where its colour is strongest, and the dirt image as it is. Throws as DumpFile does.
PatternContent ReadPatternContent(Chunky& chunky, const std::string& file, const DumpOptions& options);

void PrintPattern(std::string& out, const PatternContent& content);
nlohmann::json ToJson(const PatternContent& content);
