#pragma once

#include <string>
#include <vector>

// The whole program, given the words behind its name. Answers the exit status.
int RunApp(const std::vector<std::string>& words);
