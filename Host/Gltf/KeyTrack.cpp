#include "Host/Gltf/KeyTrack.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace gltf {

namespace {

constexpr unsigned s_RotationSize = 4;
// Close together the sine vanishes, and a straight line is as good.
constexpr double s_StraightFrom = 0.9999999;

// Up to 18 degrees a series gives the sines' ratios to the last digit, in a fraction of the time.
constexpr double s_SeriesFrom = 0.95;
constexpr Pair Both(double number) { return Pair{number, number}; }
constexpr Pair s_SeriesU[] = {Both(1.0 / 3),  Both(1.0 / 10), Both(1.0 / 21),  Both(1.0 / 36),
                              Both(1.0 / 55), Both(1.0 / 78), Both(1.0 / 105), Both(1.0 / 136)};
constexpr Pair s_SeriesV[] = {Both(1.0 / 3),  Both(2.0 / 5),  Both(3.0 / 7),  Both(4.0 / 9),
                              Both(5.0 / 11), Both(6.0 / 13), Both(7.0 / 15), Both(8.0 / 17)};

// Makes sin(share * angle) / sin(angle) of two shares of each angle: in the series each term is the one before it times
// (v - u * share squared) * (1 - cosine).
void MakeSineRatios(Pair& shareOfA, Pair& shareOfB, Pair versine) {
    const Pair squaredA = shareOfA * shareOfA;
    const Pair squaredB = shareOfB * shareOfB;
    Pair sumA = {1.0, 1.0};
    Pair sumB = {1.0, 1.0};
    for (size_t i = std::size(s_SeriesU); i-- > 0;) {
        sumA = 1.0 + (s_SeriesV[i] - s_SeriesU[i] * squaredA) * versine * sumA;
        sumB = 1.0 + (s_SeriesV[i] - s_SeriesU[i] * squaredB) * versine * sumB;
    }
    shareOfA *= sumA;
    shareOfB *= sumB;
}

double Dot(const KeyValue& a, const KeyValue& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3]; }

void SetValue(KeyRun& run, size_t lane, const KeyValue& value) {
    for (size_t i = 0; i < value.size(); ++i)
        SetLane(run[i], lane, value[i]);
}

} // namespace

KeyValue KeySampler::ReadValue(uint32_t index) const {
    float floats[4] = {};
    if (m_Track.values.IsPlainFloat() && m_Size == s_RotationSize)
        std::memcpy(floats, m_Track.values.GetElement(index), sizeof floats);
    else
        m_Track.values.Read(index, floats, m_Size);
    return {floats[0], floats[1], floats[2], floats[3]};
}

void KeySampler::Evaluate(std::span<const TimeValue> ticks, KeyRun& out) {
    const std::span<const KeyPlace> places = m_Track.pTimeline->Find(ticks);
    if (m_Track.interpolation == Interpolation::Linear && m_Size == s_RotationSize) {
        Turn(places, out);
        return;
    }
    for (size_t i = 0; i < places.size(); ++i) {
        MoveTo(places[i]);
        SetValue(out, i, m_IsBetween ? Interpolate(places[i]) : m_A);
    }
}

void KeySampler::MoveTo(const KeyPlace& place) {
    const bool isBetween = place.isBetween && m_Track.interpolation != Interpolation::Step;
    if (place.key == m_Key && isBetween == m_IsBetween)
        return;
    const bool goesOn = m_IsBetween && place.key == m_Key + 1;
    m_Key = place.key;
    m_IsBetween = isBetween;
    if (m_Track.interpolation == Interpolation::CubicSpline) {
        ReadSpline(m_Key);
        return;
    }
    m_A = goesOn ? m_B : ReadValue(m_Key); // perhaps the negative of a rotation, which is the same one
    if (!isBetween)
        return;
    m_B = ReadValue(m_Key + 1);
    if (m_Size == s_RotationSize)
        FindAngle();
}

// Each key has three elements: the tangent that comes in, the value, the tangent that goes out.
void KeySampler::ReadSpline(uint32_t key) {
    m_A = ReadValue(key * 3 + 1);
    if (!m_IsBetween)
        return;
    m_Out = ReadValue(key * 3 + 2);
    m_In = ReadValue(key * 3 + 3);
    m_B = ReadValue(key * 3 + 4);
}

void KeySampler::FindAngle() {
    m_Cosine = Dot(m_A, m_B);
    if (m_Cosine < 0.0) {
        m_Cosine = -m_Cosine;
        for (double& component : m_B)
            component = -component;
    }
    if (m_Cosine < s_SeriesFrom) {
        m_Angle = std::acos(m_Cosine);
        m_Sine = std::sin(m_Angle);
    }
}

KeyValue KeySampler::Interpolate(const KeyPlace& place) const {
    if (m_Track.interpolation == Interpolation::CubicSpline)
        return Bend(place);
    KeyValue result;
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = m_A[i] + (m_B[i] - m_A[i]) * place.share;
    return result;
}

KeyValue KeySampler::Bend(const KeyPlace& place) const {
    const double s = place.share;
    const double s2 = s * s;
    const double s3 = s2 * s;
    KeyValue result;
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = (2 * s3 - 3 * s2 + 1) * m_A[i] + place.span * (s3 - 2 * s2 + s) * m_Out[i] +
                    (-2 * s3 + 3 * s2) * m_B[i] + place.span * (s3 - s2) * m_In[i];
    return result;
}

KeySampler::Blend KeySampler::GetBlend(const KeyPlace& place) {
    MoveTo(place);
    Blend blend{.a = m_A, .b = m_A, .shareOfA = 1.0, .shareOfB = 0.0, .versine = 0.0};
    if (!m_IsBetween)
        return blend;
    blend.b = m_B;
    blend.shareOfA = 1.0 - place.share;
    blend.shareOfB = place.share;
    if (m_Cosine < s_SeriesFrom) {
        blend.shareOfA = std::sin(blend.shareOfA * m_Angle) / m_Sine;
        blend.shareOfB = std::sin(blend.shareOfB * m_Angle) / m_Sine;
    } else if (m_Cosine < s_StraightFrom) {
        blend.versine = 1.0 - m_Cosine;
    }
    return blend;
}

void KeySampler::Turn(std::span<const KeyPlace> places, KeyRun& out) {
    for (size_t i = 0; i < places.size(); i += 2) {
        const Blend first = GetBlend(places[i]);
        const Blend second = i + 1 < places.size() ? GetBlend(places[i + 1]) : first;
        Pair shareOfA = {first.shareOfA, second.shareOfA};
        Pair shareOfB = {first.shareOfB, second.shareOfB};
        if (first.versine > 0.0 || second.versine > 0.0)
            MakeSineRatios(shareOfA, shareOfB, Pair{first.versine, second.versine});
        for (size_t number = 0; number < out.size(); ++number)
            out[number][i / 2] =
                shareOfA * Pair{first.a[number], second.a[number]} + shareOfB * Pair{first.b[number], second.b[number]};
    }
}

} // namespace gltf
