#pragma once

#include <cstdint>
#include <span>
#include <vector>

// What is fed to the readers of the tools' own models: sound files, and whatever a fuzzer makes of them.

enum class ToolsFile { Intermediate, Generic, Motion };

// Small files with one of everything.
std::vector<std::vector<uint8_t>> MakeToolsSeeds(ToolsFile file);

// Reads the input. True when a model came out of it, which was then written in the generic form, read and written
// again. A reader that throws what it may not, leaves something of a refused model behind, or hands out a model that
// doesn't stay the same stops the program.
bool FeedToolsReader(ToolsFile file, std::span<const uint8_t> input);
