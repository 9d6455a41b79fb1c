#pragma once

#include "Host/Gltf/Accessor.h"
#include "Host/Scene/Controller.h"

#include <array>
#include <cstdint>
#include <limits>
#include <span>

namespace gltf {

// Where a time lies among keys.
struct KeyPlace {
    uint32_t key = 0; // the last one that isn't behind it; the first one, where all are
    // Whether the next key counts as well: neither ahead of the first key nor from the last one on.
    bool isBetween = false;
    double span = 0.0;  // seconds from that key to the next
    double share = 0.0; // of the span, from 0 up to, but without, 1
};

// The times of a track's keys. Tracks mostly share theirs, and are asked for the same run of times one after the other,
// so what was found for one is kept for the next.
class Timeline {
public:
    // Seconds, never descending, at least one; in buffers that live as long.
    explicit Timeline(const AccessorView& times) : m_Times(times) {}

    uint32_t GetKeyCount() const { return m_Times.count; }
    double GetTime(uint32_t key) const;

    // The places of up to Controller::LongestRun ticks, good until the next call.
    std::span<const KeyPlace> Find(std::span<const TimeValue> ticks);

private:
    static constexpr double s_Nowhere = std::numeric_limits<double>::infinity();

    KeyPlace FindPlace(double seconds);
    void MoveTo(double seconds);
    uint32_t FindNextKey(double seconds) const;

    AccessorView m_Times;
    // What was asked for last.
    std::array<TimeValue, scene::Controller::LongestRun> m_Ticks = {};
    std::array<KeyPlace, scene::Controller::LongestRun> m_Places;
    size_t m_RunLength = 0;
    // Between which keys it is: from m_From up to, but without, m_To, where the key m_Next lies. At first nowhere.
    uint32_t m_Next = 0;
    double m_From = s_Nowhere;
    double m_To = s_Nowhere;
};

} // namespace gltf
