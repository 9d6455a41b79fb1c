#pragma once

#include <cstdint>
#include <span>
#include <vector>

// What is fed to the readers of the game's own files: sound ones, and whatever a fuzzer makes of them.

enum class FuzzedFile { Model, Motion };

// Small files with one of everything.
std::vector<std::vector<uint8_t>> MakeFinalSeeds(FuzzedFile file);

// Reads the input. True when a model came out of it, which was then written, read and written again. A reader that
// throws what it may not, leaves something of a refused model behind, or hands out a model that doesn't stay the same
// stops the program.
bool FeedFinalReader(FuzzedFile file, std::span<const uint8_t> input);
