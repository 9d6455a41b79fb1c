#pragma once

#include <nlohmann/json_fwd.hpp>

#include "Tools/pvxdump/AnimContent.h"

// For programs. With keys each stream has them as lists: [time, value], [time, x, y, z], [time, x, y, z, w], and
// [time, the twelve numbers of a matrix]. An animation of another model has its place there.
nlohmann::json ToJson(const AnimationContent& animation, bool withKeys);
