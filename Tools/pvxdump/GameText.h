#pragma once

#include <string>

class GameLoad;

// Sums up a model that was loaded as the game does, with what is missing and what stands in for it.
void PrintLoaded(std::string& out, const GameLoad& load);
