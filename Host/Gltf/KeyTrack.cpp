#include "Host/Gltf/KeyTrack.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace gltf {

namespace {

constexpr unsigned s_RotationSize = 4;
constexpr double s_Endless = std::numeric_limits<double>::infinity();
// Close together the sine vanishes, and a straight line is as good.
constexpr double s_StraightFrom = 0.9999999;

// Up to 18 degrees a series gives the sines' ratios to the last digit, in a fraction of the time.
constexpr double s_SeriesFrom = 0.95;
constexpr std::array<double, 8> s_SeriesU = {1.0 / 3,  1.0 / 10, 1.0 / 21,  1.0 / 36,
                                             1.0 / 55, 1.0 / 78, 1.0 / 105, 1.0 / 136};
constexpr std::array<double, 8> s_SeriesV = {1.0 / 3,  2.0 / 5,  3.0 / 7,  4.0 / 9,
                                             5.0 / 11, 6.0 / 13, 7.0 / 15, 8.0 / 17};

// sin(share * angle) / sin(angle): each term is the one before it times (v - u * share squared) * (1 - cosine).
double SineRatio(double share, double cosine) {
    const double versine = 1.0 - cosine;
    const double squared = share * share;
    double sum = 1.0;
    for (size_t i = s_SeriesU.size(); i-- > 0;)
        sum = 1.0 + (s_SeriesV[i] - s_SeriesU[i] * squared) * versine * sum;
    return share * sum;
}

double Dot(const KeyValue& a, const KeyValue& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3]; }

KeyValue Mix(const KeyValue& a, double weightA, const KeyValue& b, double weightB) {
    KeyValue result;
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = weightA * a[i] + weightB * b[i];
    return result;
}

} // namespace

KeySampler::KeySampler(const KeyTrack& track, unsigned size) : m_Track(track), m_Size(size) {}

double KeySampler::ReadTime(uint32_t key) const {
    float time = 0.0f;
    if (m_Track.times.IsPlainFloat())
        std::memcpy(&time, m_Track.times.GetElement(key), sizeof time);
    return double{time};
}

KeyValue KeySampler::ReadValue(uint32_t index) const {
    float floats[4] = {};
    if (m_Track.values.IsPlainFloat() && m_Size == s_RotationSize)
        std::memcpy(floats, m_Track.values.GetElement(index), sizeof floats);
    else
        m_Track.values.Read(index, floats, m_Size);
    return {floats[0], floats[1], floats[2], floats[3]};
}

// The first key behind `seconds`: most often the one after the last.
uint32_t KeySampler::FindNextKey(double seconds) const {
    const uint32_t count = m_Track.times.count;
    if (m_Next < count && seconds >= m_To && (m_Next + 1 == count || seconds < ReadTime(m_Next + 1)))
        return m_Next + 1;
    uint32_t low = 0;
    uint32_t high = count;
    while (low < high) {
        const uint32_t middle = low + (high - low) / 2;
        if (ReadTime(middle) <= seconds)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

void KeySampler::MoveTo(double seconds) {
    const uint32_t count = m_Track.times.count;
    const uint32_t last = std::exchange(m_Next, FindNextKey(seconds));
    m_From = m_Next > 0 ? ReadTime(m_Next - 1) : -s_Endless;
    m_To = m_Next < count ? ReadTime(m_Next) : s_Endless;
    if (m_Next == 0)
        SetStanding(0);
    else if (m_Next == count || m_Track.interpolation == Interpolation::Step)
        SetStanding(m_Next - 1);
    else
        SetSpan(m_Next - 1, !m_Stands && m_Next == last + 1);
}

void KeySampler::SetStanding(uint32_t key) {
    m_Stands = true;
    m_A = ReadValue(m_Track.interpolation == Interpolation::CubicSpline ? key * 3 + 1 : key);
}

void KeySampler::SetSpan(uint32_t key, bool goesOn) {
    m_Stands = false;
    m_Span = m_To - m_From;
    if (m_Track.interpolation == Interpolation::CubicSpline) {
        // Each key has three elements: the tangent that comes in, the value, the tangent that goes out.
        m_A = ReadValue(key * 3 + 1);
        m_Out = ReadValue(key * 3 + 2);
        m_In = ReadValue(key * 3 + 3);
        m_B = ReadValue(key * 3 + 4);
        return;
    }
    m_A = goesOn ? m_B : ReadValue(key); // perhaps the negative of a rotation, which is the same one
    m_B = ReadValue(key + 1);
    if (m_Size != s_RotationSize)
        return;
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

KeyValue KeySampler::Interpolate(double share) const {
    if (m_Track.interpolation == Interpolation::CubicSpline)
        return Bend(share);
    if (m_Size == s_RotationSize)
        return Turn(share);
    KeyValue result;
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = m_A[i] + (m_B[i] - m_A[i]) * share;
    return result;
}

KeyValue KeySampler::Turn(double share) const {
    if (m_Cosine >= s_StraightFrom)
        return Mix(m_A, 1.0 - share, m_B, share);
    if (m_Cosine >= s_SeriesFrom)
        return Mix(m_A, SineRatio(1.0 - share, m_Cosine), m_B, SineRatio(share, m_Cosine));
    return Mix(m_A, std::sin((1.0 - share) * m_Angle) / m_Sine, m_B, std::sin(share * m_Angle) / m_Sine);
}

KeyValue KeySampler::Bend(double share) const {
    const double s2 = share * share;
    const double s3 = s2 * share;
    KeyValue result;
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = (2 * s3 - 3 * s2 + 1) * m_A[i] + m_Span * (s3 - 2 * s2 + share) * m_Out[i] +
                    (-2 * s3 + 3 * s2) * m_B[i] + m_Span * (s3 - s2) * m_In[i];
    return result;
}

} // namespace gltf
