#pragma once

#include <nlohmann/json_fwd.hpp>

#include "Tools/pvxdump/ModelContent.h"

// For programs. With keys each stream has them as lists: [time, value], [time, x, y, z], [time, x, y, z, w], and
// [time, the twelve numbers of a matrix]. An animation that this build doesn't decode has its name, version and size.
nlohmann::json ToJson(const AnimationContent& animation, bool withKeys);
