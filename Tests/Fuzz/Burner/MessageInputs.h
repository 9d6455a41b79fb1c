#pragma once

#include <cstdint>
#include <span>
#include <vector>

// Who reads the messages.
enum class MessageSide { Tools, Burner };

// Messages that are sound, one of each type that the side reads; with their types.
std::vector<std::vector<uint8_t>> MakeMessageSeeds(MessageSide side);

// Decodes the input as what its type says. True when a message came out of it, which was then written and read again. A
// decoder that throws what it may not, or takes what it can't write again, stops the program.
bool FeedMessageReader(MessageSide side, std::span<const uint8_t> input);
