#pragma once

#include <cstdint>
#include <span>
#include <vector>

// What is fed to the readers of scripts: sound ones, and whatever a fuzzer makes of them.

enum class FuzzedScript { Base, Override, Language, Chunk };

// Scripts that the reader takes, of each kind one.
std::vector<std::vector<uint8_t>> MakeScriptSeeds(FuzzedScript reader);

// Reads the input. True when the reader took it; what came out was then used as its users do. A reader that throws what
// it may not, or a script that was saved and isn't one any more, stops the program.
bool FeedScriptReader(FuzzedScript reader, std::span<const uint8_t> input);
