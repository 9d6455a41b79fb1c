#pragma once

#include "Host/Gltf/Accessor.h"

#include <array>
#include <cstdint>
#include <limits>

namespace gltf {

enum class Interpolation { Linear, Step, CubicSpline };

// The keys of one channel, in the file's buffers.
struct KeyTrack {
    AccessorView times; // seconds, never descending
    AccessorView values;
    Interpolation interpolation = Interpolation::Linear;
};

// What a track holds: 3 numbers a key, or 4 that are a rotation.
using KeyValue = std::array<double, 4>; // the fourth is 0 where there are 3

// The value of a track at any time. Before the first key and after the last it stands still; rotations turn evenly,
// along the shorter way. It keeps what it has read of the keys around the last time that it was asked for, since a
// scene is asked frame after frame.
class KeySampler {
public:
    // The track's buffers have to live as long. `size` is 3 or 4.
    KeySampler(const KeyTrack& track, unsigned size);

    KeyValue Evaluate(double seconds) {
        if (!(seconds >= m_From && seconds < m_To))
            MoveTo(seconds);
        if (m_Stands)
            return m_A;
        return Interpolate((seconds - m_From) / m_Span);
    }

private:
    static constexpr double s_Nowhere = std::numeric_limits<double>::infinity();

    void MoveTo(double seconds);
    uint32_t FindNextKey(double seconds) const;
    double ReadTime(uint32_t key) const;
    KeyValue ReadValue(uint32_t index) const;
    void SetStanding(uint32_t key);
    // `goesOn`: it was in the span before this one.
    void SetSpan(uint32_t key, bool goesOn);

    KeyValue Interpolate(double share) const;
    KeyValue Turn(double share) const;
    KeyValue Bend(double share) const;

    KeyTrack m_Track;
    unsigned m_Size;

    // Between which keys it is: from m_From up to, but without, m_To, where the key m_Next lies. At first nowhere.
    uint32_t m_Next = 0;
    double m_From = s_Nowhere;
    double m_To = s_Nowhere;
    double m_Span = 0.0;
    bool m_Stands = true;
    KeyValue m_A{};
    KeyValue m_B{};
    // Of a spline: the tangents that go out of the key before and into the key behind.
    KeyValue m_Out{};
    KeyValue m_In{};
    // Of a rotation: the cosine of the angle between the two, and where they lie far enough apart the angle itself.
    double m_Cosine = 1.0;
    double m_Angle = 0.0;
    double m_Sine = 0.0;
};

} // namespace gltf
