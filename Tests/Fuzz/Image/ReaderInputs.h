#pragma once

#include <cstdint>
#include <span>
#include <vector>

// What is fed to the readers of pictures: sound files, and whatever a fuzzer makes of them.

enum class FuzzedReader { Dds, Jpeg, Tga, Bmp, Bw, Chunk };

// Small files that the reader takes, of each kind one.
std::vector<std::vector<uint8_t>> MakeSeeds(FuzzedReader reader);

// Reads the input. True when a picture came out of it, which was then used as its users do. A reader that throws what
// it may not, fails an assertion or hands out a picture that its file can't hold stops the program.
bool FeedReader(FuzzedReader reader, std::span<const uint8_t> input);
