#pragma once

#include <string>

// Facts about where a program's text comes from and goes to, and about its environment.
namespace Terminal {

enum class Stream { Input, Output, Error };

// A person's terminal, as opposed to a file or a pipe.
bool IsTerminal(Stream stream);
// A terminal that shows colours, whose user hasn't forbidden them (NO_COLOR in the environment, with any text).
bool WantsColour(Stream stream);
// Columns of a terminal; 80 when it doesn't tell.
int GetWidth(Stream stream);

// A variable of the environment; empty when it isn't there.
std::string GetVariable(const char* pName);

} // namespace Terminal
