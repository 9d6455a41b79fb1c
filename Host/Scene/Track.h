#pragma once

#include <vector>

#include "Host/Sdk/Types.h"

namespace scene {

// A float over time: a constant, or keys with straight lines between them. Before the first key and after the last the
// value stands still.
class FloatTrack {
public:
    struct Key {
        double ticks = 0.0;
        float value = 0.0f;
    };

    FloatTrack(float constant = 0.0f) : m_Constant(constant) {}
    // Keys may come in any order; of keys at one time the later one counts from that time on. Without a key, 0.
    explicit FloatTrack(std::vector<Key> keys);

    bool IsAnimated() const { return m_Keys.size() > 1; }
    float Evaluate(TimeValue t) const;

private:
    float m_Constant = 0.0f;
    std::vector<Key> m_Keys; // ascending by time
};

} // namespace scene
