#pragma once

#include <string>

#include "Tools/pvxdump/MotionContent.h"

// For people: one table for each kind of thing.
void PrintMotionFile(std::string& out, const MotionContent& content);
