#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// The other thing that the module of this folder offers: the stack of another process, from what was saved of it.

struct SavedStack {
    static constexpr uint32_t RegisterCount = 17;

    int process = 0;
    std::string maps; // what was mapped, as the system words it
    // In the order of the line tables' format for x86-64: rax, rdx, rcx, rbx, rsi, rdi, rbp, rsp, r8 to r15, rip.
    std::array<uint64_t, RegisterCount> registers = {};
    bool isBehindInstruction = false; // rip stands behind what happened, as behind a call
    // False for memory that wasn't saved.
    std::function<bool(uint64_t address, uint64_t& word)> readWord;
};

struct SavedFrame {
    uint64_t address = 0;
    std::string function; // what isn't known is empty, or 0
    std::string file;
    uint32_t line = 0;
};

// Innermost first, `most` at most. False when the walk came upon memory that isn't there.
using StackWalkerFunction = bool(const SavedStack& stack, uint32_t most, std::vector<SavedFrame>& frames);

constexpr char s_StackWalkerFunction[] = "PvxWalkStack";
