#pragma once

#include <chrono>
#include <cstdint>

// One job from the pipe: setup, the job's message, what is said while it is done, and its result.

constexpr uint32_t s_BurnerVersion = 1;

enum BurnStatus : int {
    Burn_Done = 0,     // the result has been taken, whatever it is
    Burn_Failed = 1,   // the other side was told why, or is gone
    Burn_NoServer = 2, // nobody offers the pipe; standard error says so
};

// How long the program waits for the tools to offer the pipe.
constexpr std::chrono::milliseconds s_BurnServerWait{10000};

BurnStatus RunBurnSession(std::chrono::milliseconds serverWait = s_BurnServerWait);
