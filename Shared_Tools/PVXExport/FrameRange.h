// The frames at which a scene's motion is sampled.
#pragma once

#include <vector>

#include "Host/Sdk/Types.h"

class Interface;

struct AnimFrame {
    TimeValue tick = 0;
    float time = 0.0f; // the animation's own, from 0 to 1 but for what the steps' sum has lost or gained
};

// All frames of the scene's animation range, the first and the last one included; at least one.
std::vector<AnimFrame> GetFrameRange(const Interface& host);
