#include "Host/Gltf/Animation.h"

#include "Host/Sdk/HostSetup.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace gltf {

namespace {

// A stream of keys counts them in 16 bits.
constexpr double s_MostFrames = 65535.0;

// Half a frame, where a scene of 60 frames a second is taken at 30, is seldom a float: the nearest may lie below it.
constexpr double s_OneUlpUp = 1.0 + 1.0 / 8388608.0;

// Reads one animation.
class ClipReader {
public:
    ClipReader(const SceneFile& file, BufferStore& buffers, const NodeTree& tree, const Messages& messages,
               const Place& place, const Json& json)
        : m_File(file), m_Buffers(buffers), m_Tree(tree), m_Messages(messages), m_Place(place), m_Json(json) {}

    Clip Read();

private:
    KeyTrack ReadTrack(const Json& channel, unsigned components);
    // Checked when it is first asked for: many channels may share one large accessor.
    std::shared_ptr<Timeline> GetTimeline(size_t accessor);
    void ReadChannel(const Json& channel);

    const SceneFile& m_File;
    BufferStore& m_Buffers;
    const NodeTree& m_Tree;
    const Messages& m_Messages;
    const Place& m_Place;
    const Json& m_Json;
    Clip m_Clip;
    std::map<size_t, std::shared_ptr<Timeline>> m_Timelines; // by accessor
    bool m_MovesMorphs = false;
};

std::shared_ptr<Timeline> ClipReader::GetTimeline(size_t accessor) {
    const auto [it, isNew] = m_Timelines.try_emplace(accessor);
    if (!isNew)
        return it->second;
    const AccessorView times = m_Buffers.GetAccessor(m_File, m_Place, accessor);
    if (times.components != 1 || times.type != ComponentType::Float || times.count == 0)
        FailDamaged(m_Place, "the times of its keys are no list of seconds");
    it->second = std::make_shared<Timeline>(times);
    double last = 0.0;
    for (uint32_t i = 0; i < times.count; ++i) {
        const double time = it->second->GetTime(i);
        if (!(time >= last && time <= std::numeric_limits<float>::max()))
            FailDamaged(m_Place, "the times of its keys do not ascend from 0");
        last = time;
    }
    return it->second;
}

// `components` 0 stands for any.
KeyTrack ClipReader::ReadTrack(const Json& channel, unsigned components) {
    const Json* pSamplers = FindArray(m_Place, m_Json, "samplers");
    const int32_t index = ReadIndex(m_Place, channel, "sampler", pSamplers ? pSamplers->Size() : 0);
    if (index < 0)
        FailDamaged(m_Place, "a channel has no sampler");
    const Json& sampler = (*pSamplers)[static_cast<rapidjson::SizeType>(index)];
    KeyTrack track;
    track.pTimeline = GetTimeline(static_cast<size_t>(ReadRequiredSize(m_Place, sampler, "input")));
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
    const uint32_t keyCount = track.pTimeline->GetKeyCount();
    if (track.values.components != components || track.values.count != keyCount * perKey)
        FailDamaged(m_Place, "the values of a channel do not fit its " + std::to_string(keyCount) + " keys");
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
    m_Clip.lastKey = std::max(m_Clip.lastKey, track.pTimeline->GetTime(track.pTimeline->GetKeyCount() - 1));
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

} // namespace gltf
