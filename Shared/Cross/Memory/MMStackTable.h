#pragma once

#include <cstdint>
#include <span>

// The stacks of all allocations that are recorded, each distinct one kept once. One table serves all pools; it takes
// the pools' lock.
namespace MMStackTable {

constexpr uint32_t s_MaxStacks = 150000;

// Its id, from 1. 0 when the table is full.
uint32_t Add(std::span<const void* const> stack);
// The addresses, innermost first; good until the next Add. Empty for an id that isn't one.
std::span<const void* const> Get(uint32_t id);

} // namespace MMStackTable
