#pragma once

#include <cstdint>
#include <span>
#include <vector>

// Pattern files that are sound, one of each form.
std::vector<std::vector<uint8_t>> MakePatternSeeds();

// Reads the input. True when a pattern came out of it, which was then written and read again. A reader that throws what
// it may not, or hands out a pattern that can't be written, stops the program.
bool FeedPatternReader(std::span<const uint8_t> input);
