#include "Host/Gltf/Animation.h"

#include "Host/Sdk/HostSetup.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace gltf {

namespace {

// A stream of keys counts them in 16 bits.
constexpr double s_MostFrames = 65535.0;

// Half a frame, where a scene of 60 frames a second is taken at 30, is seldom a float: the nearest may lie below it.
constexpr double s_OneUlpUp = 1.0 + 1.0 / 8388608.0;

constexpr unsigned s_MostComponents = 4;
using Values = std::array<double, s_MostComponents>;

Values ReadValues(const AccessorView& view, uint32_t index, unsigned size) {
    float floats[s_MostComponents] = {};
    view.Read(index, floats, size);
    Values values{};
    std::copy_n(floats, size, values.begin());
    return values;
}

double ReadTime(const AccessorView& times, uint32_t index) {
    float time = 0.0f;
    times.Read(index, &time, 1);
    return time;
}

// The first key behind `seconds`.
uint32_t FindNextKey(const AccessorView& times, double seconds) {
    uint32_t low = 0;
    uint32_t high = times.count;
    while (low < high) {
        const uint32_t middle = low + (high - low) / 2;
        if (ReadTime(times, middle) <= seconds)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

Values Slerp(const Values& a, Values b, double share) {
    double cosine = a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
    if (cosine < 0.0) {
        cosine = -cosine;
        for (double& component : b)
            component = -component;
    }
    double weightA = 1.0 - share;
    double weightB = share;
    // Close together the sine vanishes, and a straight line is as good.
    if (cosine < 0.9999999) {
        const double angle = std::acos(cosine);
        weightA = std::sin(weightA * angle) / std::sin(angle);
        weightB = std::sin(weightB * angle) / std::sin(angle);
    }
    Values result{};
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = weightA * a[i] + weightB * b[i];
    return result;
}

Values Lerp(const Values& a, const Values& b, double share) {
    Values result{};
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = a[i] + (b[i] - a[i]) * share;
    return result;
}

// Each key has three elements: the tangent that comes in, the value, the tangent that goes out.
Values Spline(const KeyTrack& track, uint32_t key, double share, double span, unsigned size) {
    const Values from = ReadValues(track.values, key * 3 + 1, size);
    const Values out = ReadValues(track.values, key * 3 + 2, size);
    const Values in = ReadValues(track.values, key * 3 + 3, size);
    const Values to = ReadValues(track.values, key * 3 + 4, size);
    const double s2 = share * share;
    const double s3 = s2 * share;
    Values result{};
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = (2 * s3 - 3 * s2 + 1) * from[i] + span * (s3 - 2 * s2 + share) * out[i] +
                    (-2 * s3 + 3 * s2) * to[i] + span * (s3 - s2) * in[i];
    return result;
}

Values EvaluateTrack(const KeyTrack& track, double seconds, unsigned size, bool isRotation) {
    const bool isSpline = track.interpolation == Interpolation::CubicSpline;
    const auto valueOf = [&](uint32_t key) { return ReadValues(track.values, isSpline ? key * 3 + 1 : key, size); };
    const uint32_t next = FindNextKey(track.times, seconds);
    if (next == 0)
        return valueOf(0);
    if (next == track.times.count || track.interpolation == Interpolation::Step)
        return valueOf(next - 1);
    const double from = ReadTime(track.times, next - 1);
    const double span = ReadTime(track.times, next) - from;
    const double share = (seconds - from) / span;
    if (isSpline)
        return Spline(track, next - 1, share, span, size);
    return isRotation ? Slerp(valueOf(next - 1), valueOf(next), share) : Lerp(valueOf(next - 1), valueOf(next), share);
}

// Reads one animation.
class ClipReader {
public:
    ClipReader(const SceneFile& file, BufferStore& buffers, const NodeTree& tree, const Messages& messages,
               const Place& place, const Json& json)
        : m_File(file), m_Buffers(buffers), m_Tree(tree), m_Messages(messages), m_Place(place), m_Json(json) {}

    Clip Read();

private:
    KeyTrack ReadTrack(const Json& channel, unsigned components);
    void CheckTimes(const AccessorView& times, size_t accessor);
    void ReadChannel(const Json& channel);

    const SceneFile& m_File;
    BufferStore& m_Buffers;
    const NodeTree& m_Tree;
    const Messages& m_Messages;
    const Place& m_Place;
    const Json& m_Json;
    Clip m_Clip;
    bool m_MovesMorphs = false;
};

void ClipReader::CheckTimes(const AccessorView& times, size_t accessor) {
    if (times.components != 1 || times.type != ComponentType::Float || times.count == 0)
        FailDamaged(m_Place, "the times of its keys are no list of seconds");
    if (!m_Buffers.GetChecks().ascending.insert(accessor).second)
        return;
    double last = 0.0;
    for (uint32_t i = 0; i < times.count; ++i) {
        const double time = ReadTime(times, i);
        if (!(time >= last && time <= std::numeric_limits<float>::max()))
            FailDamaged(m_Place, "the times of its keys do not ascend from 0");
        last = time;
    }
}

// `components` 0 stands for any.
KeyTrack ClipReader::ReadTrack(const Json& channel, unsigned components) {
    const Json* pSamplers = FindArray(m_Place, m_Json, "samplers");
    const int32_t index = ReadIndex(m_Place, channel, "sampler", pSamplers ? pSamplers->Size() : 0);
    if (index < 0)
        FailDamaged(m_Place, "a channel has no sampler");
    const Json& sampler = (*pSamplers)[static_cast<rapidjson::SizeType>(index)];
    KeyTrack track;
    const auto input = static_cast<size_t>(ReadRequiredSize(m_Place, sampler, "input"));
    track.times = m_Buffers.GetAccessor(m_File, m_Place, input);
    CheckTimes(track.times, input);
    if (components == 0)
        return track;
    track.values =
        m_Buffers.GetAccessor(m_File, m_Place, static_cast<size_t>(ReadRequiredSize(m_Place, sampler, "output")));
    const std::string_view interpolation = ReadString(m_Place, sampler, "interpolation");
    if (interpolation == "STEP")
        track.interpolation = Interpolation::Step;
    else if (interpolation == "CUBICSPLINE")
        track.interpolation = Interpolation::CubicSpline;
    else if (!interpolation.empty() && interpolation != "LINEAR")
        FailDamaged(m_Place, "its interpolation " + Quoted(interpolation) + " is unknown");
    const uint64_t perKey = track.interpolation == Interpolation::CubicSpline ? 3 : 1;
    if (track.values.components != components || track.values.count != track.times.count * perKey)
        FailDamaged(m_Place, "the values of a channel do not fit its " + std::to_string(track.times.count) + " keys");
    return track;
}

void ClipReader::ReadChannel(const Json& channel) {
    const Json* pTarget = FindObject(m_Place, channel, "target");
    const int32_t node = pTarget ? ReadIndex(m_Place, *pTarget, "node", m_Tree.nodes.size()) : -1;
    if (node < 0)
        return;
    const std::string_view path = ReadString(m_Place, *pTarget, "path");
    const bool isRotation = path == "rotation";
    const bool isKnown = isRotation || path == "translation" || path == "scale";
    const KeyTrack track = ReadTrack(channel, isRotation ? 4 : isKnown ? 3 : 0);
    m_Clip.lastKey = std::max(m_Clip.lastKey, ReadTime(track.times, track.times.count - 1));
    m_MovesMorphs |= path == "weights";
    if (!isKnown)
        return;
    NodeTracks& tracks = m_Clip.tracks[static_cast<uint32_t>(node)];
    (isRotation ? tracks.rotation : path == "scale" ? tracks.scale : tracks.translation) = track;
}

Clip ClipReader::Read() {
    if (const Json* pChannels = FindArray(m_Place, m_Json, "channels"))
        for (const Json& channel : pChannels->GetArray())
            ReadChannel(channel);
    if (m_MovesMorphs)
        m_Messages.Warn(m_Place, "it moves morph targets, which keep their default weights",
                        "animate the shape with bones");
    return std::move(m_Clip);
}

std::string_view GetAnimationName(const Json& animations, rapidjson::SizeType index) {
    return ReadString({.kind = "animation", .index = index}, animations[index], "name");
}

// By name, otherwise by index.
rapidjson::SizeType FindAnimation(const Json& animations, const std::string& wanted) {
    std::string known;
    for (rapidjson::SizeType i = 0; i < animations.Size(); ++i) {
        const std::string_view name = GetAnimationName(animations, i);
        if (name == wanted && !name.empty())
            return i;
        if (i < 20)
            known += (i ? ", " : "") + (name.empty() ? std::to_string(i) : Quoted(name));
    }
    rapidjson::SizeType index = 0;
    const char* pEnd = wanted.data() + wanted.size();
    const std::from_chars_result result = std::from_chars(wanted.data(), pEnd, index);
    if (result.ec != std::errc() || result.ptr != pEnd || index >= animations.Size())
        Fail({}, "it has no animation " + Quoted(wanted), known.empty() ? "it has none at all" : "it has " + known);
    return index;
}

} // namespace

void KeyTrack::Evaluate(double seconds, double* pOut, unsigned size, bool isRotation) const {
    const Values result = EvaluateTrack(*this, seconds, size, isRotation);
    std::copy_n(result.begin(), size, pOut);
}

std::optional<Clip> ReadClip(const SceneFile& file, BufferStore& buffers, const NodeTree& tree,
                             const LoadOptions& options, const Messages& messages) {
    if (options.clip == "none")
        return std::nullopt;
    static const Json s_Empty(rapidjson::kArrayType);
    const Json* pAnimations = FindArray({}, file.GetRoot(), "animations");
    const Json& animations = pAnimations ? *pAnimations : s_Empty;
    if (options.clip.empty() && animations.Empty())
        return std::nullopt;
    const rapidjson::SizeType index = options.clip.empty() ? 0 : FindAnimation(animations, options.clip);
    const Place place{.kind = "animation", .index = index, .name = GetAnimationName(animations, index)};
    return ClipReader(file, buffers, tree, messages, place, animations[index]).Read();
}

Interval GetRange(const std::optional<Clip>& clip, int ticksPerFrame) {
    const double ticks = clip ? clip->lastKey * s_OneUlpUp * TicksPerSecond : 0.0;
    const double frames = std::floor(ticks / ticksPerFrame + 0.5);
    if (frames >= s_MostFrames)
        Fail({}, "its animation has more than 65535 frames", "lower --fps, or choose another with --clip");
    return {0, static_cast<TimeValue>(frames) * ticksPerFrame};
}

scene::Affine KeyController::Evaluate(TimeValue t) const {
    const double seconds = static_cast<double>(t) / TicksPerSecond;
    NodeTransform transform = m_Rest;
    // An animated node has no matrix; where a file gives it one all the same, the tracks start from nothing.
    transform.matrix.reset();
    if (m_Tracks.translation)
        m_Tracks.translation->Evaluate(seconds, &transform.translation.x, 3, false);
    if (m_Tracks.scale)
        m_Tracks.scale->Evaluate(seconds, &transform.scale.x, 3, false);
    if (m_Tracks.rotation) {
        double xyzw[4];
        m_Tracks.rotation->Evaluate(seconds, xyzw, 4, true);
        transform.rotation = glm::dquat(xyzw[3], xyzw[0], xyzw[1], xyzw[2]);
    }
    return ToHostAxes(transform.ToAffine(), m_Change);
}

} // namespace gltf
