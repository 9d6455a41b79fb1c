// From a glTF file to the keys that are stored: bones and cameras against an evaluation straight by that format's
// rules, in its own axes with columns for vectors, which shares nothing with the host.
#include <algorithm>
#include <cmath>

#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/quaternion.hpp>
#include <nlohmann/json.hpp>

#include "Host/Gltf/Loader.h"
#include "Host/Sdk/HostSetup.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

namespace {

using Numbers = std::vector<double>;

constexpr double s_Near = 1e-5; // the scene is some 5 units large

enum ComponentType { Shorts = 5122, Floats = 5126 };

enum NodeIndex : int { World, Base, Elbow, Hand, Wheel, Eye };

struct RigNode {
    const char* pName;
    int parent;
    Numbers translation = {0, 0, 0};
    Numbers rotation = {0, 0, 0, 1};
    Numbers scale = {1, 1, 1};
};

// An arm of two bones, a mirrored wheel and a camera, all of which move, under two nodes that don't. The first one is
// given as a matrix and has the mesh.
const RigNode s_Nodes[] = {
    {"World", -1, {0.5, -1, 2}, {0, 0, 0.28, 0.96}},
    {"Base", World, {1, 0, 0}, {0, 0.6, 0, 0.8}},
    {"Elbow", Base, {0, 1, 0.25}},
    {"Hand", Elbow, {0.5, 0.75, 0}, {0, 0, 0.28, 0.96}},
    {"Wheel", Base, {2, 0, 1}, {0, 0, 0, 1}, {-1, 2, 3}},
    {"Eye", World, {0, 2, 4}},
};

struct Channel {
    NodeIndex node;
    std::string path;
    std::string interpolation;
    Numbers times;
    Numbers values;
    ComponentType type = Floats;
};

Numbers AsShorts(Numbers values) {
    for (double& value : values)
        value = std::round(value * 32767.0) / 32767.0;
    return values;
}

// All interpolations, keys beside the frames, a rotation given as its negative, and shorts.
const Channel s_Clip[] = {
    {Elbow,
     "rotation",
     "LINEAR",
     {0.1, 0.37, 0.9, 1.25},
     {0, 0, 0, 1, 0.6, 0, 0, 0.8, -0.5, -0.5, -0.5, -0.5, 0, 0.1, 0, 0.995}},
    {Hand, "rotation", "STEP", {0, 0.5, 1.01}, {0, 0, 0, 1, 0, 0.6, 0, 0.8, 0.8, 0, 0, 0.6}},
    {Hand, "translation", "CUBICSPLINE", {0, 0.7, 1.3}, {0, 0, 0,  0.5, 0.75,   0, 1, 2,   3,   /**/ 0, 1, 0, 1, 1,
                                                         0, 0, -2, 0,   /**/ 4, 0, 0, 0.5, 0.5, 0.5,    0, 0, 0}},
    {Wheel, "rotation", "LINEAR", {0, 0.45, 0.9}, AsShorts({0, 0, 0, 1, 0.6, 0, 0, 0.8, 0.96, 0, 0, 0.28}), Shorts},
    {Wheel, "translation", "LINEAR", {0.2, 1.0}, {2, 0, 1, 2, 0.5, -1}},
    {Eye, "translation", "LINEAR", {0, 1.3}, {0, 2, 4, 3, 2, 0}},
    {Eye, "rotation", "CUBICSPLINE", {0, 1.3}, {0,      0,   0, 0, 0, 0,   0, 1,   0, 0.5, 0, 0,
                                                /**/ 0, 0.5, 0, 0, 0, 0.6, 0, 0.8, 0, 0,   0, 0}},
};

glm::dvec4 RowOf(const Numbers& values, size_t width, size_t row) {
    glm::dvec4 v(0.0);
    for (size_t i = 0; i < width; ++i)
        v[static_cast<int>(i)] = values[row * width + i];
    return v;
}

glm::dquat ToQuat(const glm::dvec4& v) { return {v.w, v.x, v.y, v.z}; }

glm::dvec4 Evaluate(const Channel& channel, double seconds) {
    const Numbers& times = channel.times;
    const size_t width = channel.path == "rotation" ? 4 : 3;
    const size_t rows = channel.interpolation == "CUBICSPLINE" ? 3 : 1; // in-tangent, value, out-tangent
    const auto row = [&](size_t key, size_t which) { return RowOf(channel.values, width, key * rows + which); };
    const auto value = [&](size_t key) { return row(key, rows / 2); };
    if (seconds <= times.front())
        return value(0);
    if (seconds >= times.back())
        return value(times.size() - 1);
    const auto key = static_cast<size_t>(std::ranges::upper_bound(times, seconds) - times.begin()) - 1;
    const double span = times[key + 1] - times[key];
    const double t = (seconds - times[key]) / span;
    if (channel.interpolation == "STEP")
        return value(key);
    if (rows == 3)
        return (2 * t * t * t - 3 * t * t + 1) * value(key) + span * (t * t * t - 2 * t * t + t) * row(key, 2) +
               (-2 * t * t * t + 3 * t * t) * value(key + 1) + span * (t * t * t - t * t) * row(key + 1, 0);
    if (width == 3)
        return glm::mix(value(key), value(key + 1), t);
    const glm::dquat turned = glm::slerp(ToQuat(value(key)), ToQuat(value(key + 1)), t);
    return {turned.x, turned.y, turned.z, turned.w};
}

glm::dvec4 GetProperty(int node, const char* pPath, const Numbers& rest, double seconds) {
    for (const Channel& channel : s_Clip)
        if (channel.node == node && channel.path == pPath)
            return Evaluate(channel, seconds);
    return RowOf(rest, rest.size(), 0);
}

glm::dmat4 GetWorld(int node, double seconds) {
    if (node < 0)
        return glm::dmat4(1.0);
    const RigNode& n = s_Nodes[node];
    const glm::dvec3 translation(GetProperty(node, "translation", n.translation, seconds));
    const glm::dquat rotation = ToQuat(GetProperty(node, "rotation", n.rotation, seconds));
    const glm::dmat4 local = glm::translate(glm::dmat4(1.0), translation) * glm::mat4_cast(glm::normalize(rotation)) *
                             glm::scale(glm::dmat4(1.0), glm::dvec3(RowOf(n.scale, 3, 0)));
    return GetWorld(n.parent, seconds) * local;
}

// glTF's (x, y, z) is the game's (-x, y, z).
glm::dvec3 ToGame(const glm::dvec3& p) { return {-p.x, p.y, p.z}; }

// A bone's own X, Y and Z are glTF's X, -Z and Y; a camera looks along glTF's own -Z, and along Z in the game. The
// change of hands turns the first row round.
glm::dmat4x3 GameMatrix(const glm::dmat4& world, bool isCamera) {
    const glm::dvec3 up = ToGame(glm::normalize(glm::dvec3(world[1])));
    const glm::dvec3 back = -ToGame(glm::normalize(glm::dvec3(world[2])));
    const glm::dvec3 y = isCamera ? up : back;
    const glm::dvec3 z = isCamera ? back : up;
    return {glm::cross(y, z), y, z, ToGame(glm::dvec3(world[3]))};
}

void ExpectNear(const glm::dmat4x3& actual, const glm::dmat4x3& expected, const std::string& where) {
    for (int row = 0; row < 4; ++row)
        EXPECT_LT(glm::length(actual[row] - expected[row]), s_Near) << where << ", row " << row;
}

class GltfExport : public ExportTest {
protected:
    GltfExport() {
        AddNodes();
        for (const Channel& channel : s_Clip)
            AddChannel(channel);
        m_Json["bufferViews"] = {{{"buffer", 0}, {"byteLength", m_Buffer.size()}}};
        m_Json["buffers"] = {{{"uri", "crane.bin"}, {"byteLength", m_Buffer.size()}}};
        m_Temp.Write("crane.bin", m_Buffer);
        m_Temp.Write("crane.gltf", m_Json.dump());
    }
    ~GltfExport() override { SetFrameRate(30); }

    // Adds a list of numbers and gives the accessor that reads it.
    size_t Add(const Numbers& values, const char* pType, size_t width, ComponentType type = Floats) {
        const size_t offset = m_Buffer.size();
        const auto store = [this](auto value) { m_Buffer.append(reinterpret_cast<const char*>(&value), sizeof value); };
        for (const double value : values)
            if (type == Shorts)
                store(static_cast<int16_t>(std::lround(value * 32767.0)));
            else
                store(static_cast<float>(value));
        m_Json["accessors"].push_back({{"bufferView", 0},
                                       {"byteOffset", offset},
                                       {"componentType", type},
                                       {"count", values.size() / width},
                                       {"type", pType},
                                       {"normalized", type == Shorts}});
        return m_Json["accessors"].size() - 1;
    }

    void AddNodes() {
        nlohmann::json& nodes = m_Json["nodes"];
        for (const RigNode& node : s_Nodes) {
            nodes.push_back({{"name", node.pName}});
            if (node.parent < 0)
                continue;
            nodes[static_cast<size_t>(node.parent)]["children"].push_back(nodes.size() - 1);
            nodes.back().update(
                {{"translation", node.translation}, {"rotation", node.rotation}, {"scale", node.scale}});
        }
        const glm::dmat4 matrix = GetWorld(World, 0.0);
        nodes[World]["matrix"] = Numbers(&matrix[0].x, &matrix[0].x + 16);
        nodes[World]["mesh"] = 0;
        const size_t positions = Add({0, 0, 0, 1, 0, 0, 0, 1, 0}, "VEC3", 3);
        m_Json["meshes"] = {{{"primitives", {{{"attributes", {{"POSITION", positions}}}}}}}};
        nodes[Eye]["camera"] = 0;
        m_Json["cameras"] = {{{"type", "perspective"}, {"perspective", {{"yfov", 0.8}, {"znear", 0.1}}}}};
    }

    void AddChannel(const Channel& channel) {
        nlohmann::json& clip = m_Json["animations"][0];
        const bool turns = channel.path == "rotation";
        clip["samplers"].push_back(
            {{"input", Add(channel.times, "SCALAR", 1)},
             {"output", Add(channel.values, turns ? "VEC4" : "VEC3", turns ? 4 : 3, channel.type)},
             {"interpolation", channel.interpolation}});
        clip["channels"].push_back(
            {{"sampler", clip["samplers"].size() - 1}, {"target", {{"node", channel.node}, {"path", channel.path}}}});
    }

    nlohmann::json m_Json = {{"asset", {{"version", "2.0"}}}};
    std::string m_Buffer;
};

TEST_F(GltfExport, BonesAndTheCameraStandWhereGltfPutsThemAtEveryFrame) {
    const NodeIndex nodes[] = {Elbow, Hand, Wheel};
    for (const int fps : {30, 24}) {
        gltf::LoadOptions options;
        options.fps = fps;
        const auto pScene = gltf::Load(GetPath("crane.gltf"), options, nullptr);
        EXPECT_EQ(m_Export.DoExport(GetPath("Foo.pvx").c_str(), nullptr, pScene.get()), 1);
        WithModel([&](const RenderModel& model) {
            const Skeleton& skeleton = *model.GetSkeleton();
            ASSERT_EQ(skeleton.GetBoneCount(), 3u);
            for (int32_t i = 0; i < 3; ++i)
                ExpectNear(glm::dmat4x3(skeleton.GetBone(i).GetReferenceMatrix()),
                           GameMatrix(GetWorld(nodes[i], 0.0), false), skeleton.GetBone(i).GetName().GetText());
        });
        WithStoredAnim([&](const AnimInterm& anim) {
            ASSERT_EQ(anim.GetFrameCount(), static_cast<int>(std::lround(1.3 * fps)) + 1);
            ASSERT_EQ(anim.GetCameraCount(), 1u);
            const Anim::CameraStream& camera = anim.GetCamera(0);
            for (size_t frame = 0; frame < static_cast<size_t>(anim.GetFrameCount()); ++frame) {
                SCOPED_TRACE("frame " + std::to_string(frame));
                const double seconds = static_cast<double>(frame) / fps;
                for (int32_t i = 0; i < 3; ++i)
                    ExpectNear(glm::dmat4x3(anim.GetMatrixStream(i)->GetKeys()[frame].value),
                               GameMatrix(GetWorld(nodes[i], seconds), false), s_Nodes[nodes[i]].pName);
                const glm::dmat3 turned = glm::mat3_cast(glm::dquat(camera.pRotation->GetKeys()[frame].value));
                const glm::dvec3 place = camera.pPosition->GetKeys()[frame].value;
                ExpectNear({turned[0], turned[1], turned[2], place}, GameMatrix(GetWorld(Eye, seconds), true), "Eye");
            }
        });
    }
}

} // namespace
