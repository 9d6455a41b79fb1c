#include "Shared_Tools/PVXExport/FrameRange.h"

#include <algorithm>

#include "Host/Sdk/Core.h"
#include "Host/Sdk/Interface.h"

std::vector<AnimFrame> GetFrameRange(const Interface& host) {
    const Interval range = host.GetAnimRange();
    const auto ticksPerFrame = static_cast<float>(GetTicksPerFrame());
    const auto first = static_cast<int64_t>(static_cast<float>(range.Start()) / ticksPerFrame);
    const auto last = static_cast<int64_t>(static_cast<float>(range.End()) / ticksPerFrame);
    const int64_t count = std::max<int64_t>(last - first + 1, 1);

    std::vector<AnimFrame> frames;
    frames.reserve(static_cast<size_t>(count));
    // Summed up and not multiplied out, in single precision: that is where keys have always been.
    auto tick = static_cast<float>(range.Start());
    float time = 0.0f;
    const float step = 1.0f / static_cast<float>(count - 1); // without an end for a single frame, which needs none
    for (int64_t i = 0; i < count; ++i) {
        frames.push_back({static_cast<TimeValue>(tick), time});
        tick += ticksPerFrame;
        time += step;
    }
    return frames;
}
