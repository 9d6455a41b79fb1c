#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

#include <glm/gtc/quaternion.hpp>

#include "Shared/Cross/RenderAnim/AnimKey.h"

// How a value between keys comes about; see AnimStream::Sample.

template <class V>
V InterpolateValues(const V& from, const V& to, float fraction) {
    return from + (to - from) * fraction;
}

// The shorter way round; straight where the two are so close that the angle between them is lost to rounding.
inline glm::quat InterpolateValues(const glm::quat& from, const glm::quat& to, float fraction) {
    return glm::slerp(from, to, fraction);
}

template <class V>
V InterpolateKeys(const AnimKey<V>& key, const AnimKey<V>& next, float time) {
    const float fraction = (time - key.time) / (next.time - key.time);
    // Two keys at one time have no fraction, and the first of them counts.
    if (!(fraction > 0.0f))
        return key.value;
    return fraction >= 1.0f ? next.value : InterpolateValues(key.value, next.value, fraction);
}

inline float WrapTime(float time) { return time > 1.0f ? time - (std::nearbyint(time + 0.50001f) - 1.0f) : time; }

// Samples keys that need not lie in one piece: `keyAt` gives the key of an index below `count`, which is above 0.
template <class V, class KeyAt>
V SampleKeys(size_t count, KeyAt keyAt, float time, bool loops, uint16_t& hint) {
    if (count == 1) {
        hint = 0;
        return keyAt(0).value;
    }
    if (time < 0.0f)
        time = 0.0f;
    if (loops)
        time = WrapTime(time);
    // A hint may be that of a longer stream, and a loop comes back to its start by itself.
    const bool isStale = hint >= count || (loops && time < keyAt(hint).time);
    size_t index = isStale ? 0 : hint;
    for (; index + 1 < count; ++index) {
        const AnimKey<V>& key = keyAt(index);
        const AnimKey<V>& next = keyAt(index + 1);
        if (key.time <= time && time <= next.time) {
            hint = static_cast<uint16_t>(index);
            return InterpolateKeys(key, next, time);
        }
    }
    hint = static_cast<uint16_t>(count - 1);
    return keyAt(count - 1).value;
}
