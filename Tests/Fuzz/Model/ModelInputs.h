#pragma once

#include <cstdint>
#include <span>
#include <vector>

// What is fed to the readers of models and of the motion files beside them, those of the tools and those of the game:
// sound files, and whatever a fuzzer makes of them.

enum class ModelFile { Intermediate, Generic, GenericMotion, Final, FinalMotion };

// A small file with one of everything.
std::vector<std::vector<uint8_t>> MakeModelSeeds(ModelFile file);

// Reads the input. True when a model came out of it, which was then written, an intermediate one in the generic form,
// read and written again. A reader that throws what it may not, leaves something of a refused model behind, or hands
// out a model that doesn't stay the same stops the program.
bool FeedModelReader(ModelFile file, std::span<const uint8_t> input);
