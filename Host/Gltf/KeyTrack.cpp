#include "Host/Gltf/KeyTrack.h"

#include <algorithm>
#include <cmath>

namespace gltf {

namespace {

constexpr unsigned s_RotationSize = 4;
// Close together the sine vanishes, and a straight line is as good.
constexpr double s_StraightFrom = 0.9999999;

// Up to 18 degrees a series gives the sines' ratios to the last digit, in a fraction of the time.
constexpr double s_SeriesFrom = 0.95;
constexpr std::array<double, 8> s_SeriesU = {1.0 / 3,  1.0 / 10, 1.0 / 21,  1.0 / 36,
                                             1.0 / 55, 1.0 / 78, 1.0 / 105, 1.0 / 136};
constexpr std::array<double, 8> s_SeriesV = {1.0 / 3,  2.0 / 5,  3.0 / 7,  4.0 / 9,
                                             5.0 / 11, 6.0 / 13, 7.0 / 15, 8.0 / 17};

// Makes sin(share * angle) / sin(angle) of two shares of each angle: in the series each term is the one before it times
// (v - u * share squared) * (1 - cosine).
void MakeSineRatios(Pair& shareOfA, Pair& shareOfB, Pair versine) {
    const Pair squaredA = shareOfA * shareOfA;
    const Pair squaredB = shareOfB * shareOfB;
    Pair sumA = {1.0, 1.0};
    Pair sumB = {1.0, 1.0};
    for (size_t i = s_SeriesU.size(); i-- > 0;) {
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

// Each value is a sum of the two keys around it, with shares that make the turn even.
void KeySampler::Turn(std::span<const KeyPlace> places, KeyRun& out) {
    KeyRun a{};
    KeyRun b{};
    Lanes sharesOfA{};
    Lanes sharesOfB{};
    Lanes versines{}; // 0 leaves the shares as they are
    for (size_t i = 0; i < places.size(); ++i) {
        const double share = places[i].share;
        MoveTo(places[i]);
        SetValue(a, i, m_A);
        SetValue(b, i, m_IsBetween ? m_B : m_A);
        const bool isWide = m_IsBetween && m_Cosine < s_SeriesFrom;
        SetLane(sharesOfA, i, isWide ? std::sin((1.0 - share) * m_Angle) / m_Sine : 1.0 - share);
        SetLane(sharesOfB, i, isWide ? std::sin(share * m_Angle) / m_Sine : share);
        SetLane(versines, i, m_IsBetween && !isWide && m_Cosine < s_StraightFrom ? 1.0 - m_Cosine : 0.0);
    }
    for (size_t i = 0; i < versines.size(); ++i) {
        Pair shareOfA = sharesOfA[i];
        Pair shareOfB = sharesOfB[i];
        if (versines[i][0] != 0.0 || versines[i][1] != 0.0)
            MakeSineRatios(shareOfA, shareOfB, versines[i]);
        for (size_t number = 0; number < out.size(); ++number)
            out[number][i] = shareOfA * a[number][i] + shareOfB * b[number][i];
    }
}

} // namespace gltf
