#pragma once

#include <string>
#include <vector>

#include "Tools/pvxdump/AnimContent.h"

// For people: lengths and counts, what is driven by which values, and the cameras.
void PrintAnimations(std::string& out, const std::vector<AnimationContent>& animations);
