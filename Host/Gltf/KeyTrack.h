#pragma once

#include "Host/Gltf/Timeline.h"

#include <array>
#include <cstdint>
#include <memory>

namespace gltf {

enum class Interpolation { Linear, Step, CubicSpline };

// The keys of one channel, in the file's buffers.
struct KeyTrack {
    std::shared_ptr<Timeline> pTimeline;
    AccessorView values;
    Interpolation interpolation = Interpolation::Linear;
};

// What a track holds: 3 numbers a key, or 4 that are a rotation.
using KeyValue = std::array<double, 4>; // the fourth is 0 where there are 3

// The same number at two times, which the processor works on in one step.
using Pair [[gnu::vector_size(16)]] = double;
// The same at all times of a run.
using Lanes = std::array<Pair, scene::Controller::LongestRun / 2>;
using KeyRun = std::array<Lanes, 4>; // by the number's place in the value

inline void SetLane(Lanes& lanes, size_t lane, double number) { lanes[lane / 2][lane % 2] = number; }

// The values of a track at any times. Before the first key and after the last it stands still; rotations turn evenly,
// along the shorter way. It keeps what it has read of the keys around the last time that it was asked for, since a
// scene is asked frame after frame.
class KeySampler {
public:
    // The track's buffers have to live as long. `size` is 3 or 4.
    KeySampler(const KeyTrack& track, unsigned size) : m_Track(track), m_Size(size) {}

    // Lanes beyond the run get values of no meaning, or keep theirs.
    void Evaluate(std::span<const TimeValue> ticks, KeyRun& out);

private:
    static constexpr uint32_t s_None = UINT32_MAX;

    KeyValue ReadValue(uint32_t index) const;
    void MoveTo(const KeyPlace& place);
    void ReadSpline(uint32_t key);
    void FindAngle();

    KeyValue Interpolate(const KeyPlace& place) const;
    KeyValue Bend(const KeyPlace& place) const;

    // A rotation as a sum of the two keys around it, with shares that make the turn even.
    struct Blend {
        KeyValue a, b;
        double shareOfA, shareOfB;
        double versine; // of the angle between them; 0: the shares are what they have to be
    };
    Blend GetBlend(const KeyPlace& place);
    void Turn(std::span<const KeyPlace> places, KeyRun& out);

    KeyTrack m_Track;
    unsigned m_Size;

    // The key before the last time, and what was read for it.
    uint32_t m_Key = s_None;
    bool m_IsBetween = false;
    KeyValue m_A{};
    KeyValue m_B{}; // of the next key, and only between the two
    // Of a spline: the tangents that go out of the key before and into the key behind.
    KeyValue m_Out{};
    KeyValue m_In{};
    // Of a rotation: the cosine of the angle between the two, and where they lie far enough apart the angle itself.
    double m_Cosine = 1.0;
    double m_Angle = 0.0;
    double m_Sine = 0.0;
};

} // namespace gltf
