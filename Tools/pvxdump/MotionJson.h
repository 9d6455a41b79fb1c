#pragma once

#include <nlohmann/json_fwd.hpp>

#include "Tools/pvxdump/MotionContent.h"

// For programs: everything that the file holds, with keys if asked for.
nlohmann::json ToJson(const MotionContent& content, bool withKeys);
