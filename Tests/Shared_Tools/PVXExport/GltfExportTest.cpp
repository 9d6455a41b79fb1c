// From a glTF file to the bytes that are stored: bones, vertices and cameras against an evaluation of their own.
#include <cmath>
#include <cstring>

#include <glm/gtc/quaternion.hpp>

#include "Host/Gltf/Loader.h"
#include "Host/Sdk/HostSetup.h"
#include "Shared/Cross/Glaze/VertexSet.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/Mesh.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/VertexWeight.h"
#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"
#include "Tests/Shared_Tools/PVXExport/GltfReference.h"

namespace {

using Element = std::vector<double>;

// The scene is some 5 units large.
constexpr double s_Near = 1e-5;
constexpr size_t s_VertexCount = 60;

enum NodeIndex : size_t { World, Base, Root, Spacer, Elbow, Hand, Skin, Wheel, Eye, Still };

// glTF's (x, y, z) is the game's (-x, y, z).
glm::dvec3 ToGame(const glm::dvec3& p) { return {-p.x, p.y, p.z}; }

glm::dvec3 Axis(const glm::dmat4& world, int column) { return ToGame(glm::normalize(glm::dvec3(world[column]))); }

// The rows of a bone: its own X, Y and Z are glTF's X, -Z and Y, and the change of hands turns the first one round.
glm::dmat4x3 BoneMatrix(const glm::dmat4& world) {
    const glm::dvec3 y = -Axis(world, 2);
    const glm::dvec3 z = Axis(world, 1);
    return {glm::cross(y, z), y, z, ToGame(glm::dvec3(world[3]))};
}

// A camera looks along glTF's own -Z, and along Z in the game.
glm::dmat4x3 CameraMatrix(const glm::dmat4& world) {
    const glm::dvec3 y = Axis(world, 1);
    const glm::dvec3 z = -Axis(world, 2);
    return {glm::cross(y, z), y, z, ToGame(glm::dvec3(world[3]))};
}

void ExpectNear(const glm::dmat4x3& actual, const glm::dmat4x3& expected, const std::string& where) {
    for (int row = 0; row < 4; ++row)
        EXPECT_LT(glm::length(actual[row] - expected[row]), s_Near) << where << ", row " << row;
}

// An arm of three joints with a dummy between two of them, a mirrored wheel, a camera and a mesh that stays, all under
// a matrix. The clip uses all interpolations, keys beside the frames, a rotation given as its negative, and shorts.
class GltfExport : public ExportTest {
protected:
    GltfExport() {
        AddNodes();
        AddMeshes();
        AddClip();
        m_File.Write(m_Folder.string(), "crane");
    }
    ~GltfExport() override { SetFrameRate(30); }

    void AddNodes() {
        m_File.json["nodes"] = {
            {{"name", "World"},
             {"matrix", {0.8, 0.6, 0, 0, -0.6, 0.8, 0, 0, 0, 0, 1, 0, 0.5, -1, 2, 1}},
             {"children", {Base, Eye, Still}}},
            {{"name", "Base"}, {"rotation", {0, 0.6, 0, 0.8}}, {"translation", {1, 0, 0}}, {"children", {Root, Wheel}}},
            {{"name", "Root"}, {"translation", {0, 1, 0}}, {"children", {Spacer}}},
            {{"name", "Spacer"}, {"rotation", {0.6, 0, 0, 0.8}}, {"children", {Elbow}}},
            {{"name", "Elbow"}, {"translation", {0, 1, 0.25}}, {"children", {Hand}}},
            {{"name", "Hand"}, {"translation", {0.5, 0.75, 0}}, {"rotation", {0, 0, 0.28, 0.96}}},
            {{"name", "Skin"}, {"mesh", 0}, {"skin", 0}, {"translation", {9, 9, 9}}},
            {{"name", "Wheel"}, {"mesh", 1}, {"scale", {-1, 1, 1}}, {"translation", {2, 0, 1}}},
            {{"name", "Eye"}, {"camera", 0}, {"translation", {0, 2, 4}}},
            {{"name", "Still"}, {"mesh", 1}, {"scale", {1, 2, 3}}}};
        m_File.json["scenes"] = {{{"nodes", {World, Skin}}}};
        m_File.json["cameras"] = {{{"type", "perspective"}, {"perspective", {{"yfov", 0.8}, {"znear", 0.1}}}}};
    }

    // Every vertex is known by its u.
    nlohmann::json MakePrimitive() {
        Element positions;
        Element uvs;
        for (size_t i = 0; i < s_VertexCount; ++i) {
            positions.insert(positions.end(), {Random(), Random() * 3.0, Random()});
            uvs.insert(uvs.end(), {static_cast<double>(i) / 64.0, 0.0});
        }
        return {{"attributes", {{"POSITION", m_File.Add(positions, "VEC3")}, {"TEXCOORD_0", m_File.Add(uvs, "VEC2")}}}};
    }

    void AddMeshes() {
        nlohmann::json skinned = MakePrimitive();
        Element joints;
        Element weights;
        for (size_t i = 0; i < s_VertexCount; ++i) {
            joints.insert(joints.end(), {0, 2, 1, 0});
            const double first = static_cast<double>(i % 5) / 4.0;
            weights.insert(weights.end(), {first, (1.0 - first) * 0.625, (1.0 - first) * 0.375, 0});
        }
        skinned["attributes"]["JOINTS_0"] = m_File.Add(joints, "VEC4", 5121);
        skinned["attributes"]["WEIGHTS_0"] = m_File.Add(weights, "VEC4");
        m_File.json["meshes"] = {{{"primitives", {skinned}}}, {{"primitives", {MakePrimitive()}}}};
        Element binds;
        for (const size_t joint : {Root, Elbow, Hand}) {
            const glm::dmat4 bind = glm::inverse(GltfReference(m_File).GetWorld(joint, 0.0));
            for (int column = 0; column < 4; ++column)
                binds.insert(binds.end(), {bind[column].x, bind[column].y, bind[column].z, bind[column].w});
        }
        m_File.json["skins"] = {{{"joints", {Root, Elbow, Hand}}, {"inverseBindMatrices", m_File.Add(binds, "MAT4")}}};
    }

    void AddChannel(size_t node, const char* pPath, const Element& times, const Element& values,
                    const char* pInterpolation, int componentType = 5126) {
        nlohmann::json& clip = m_File.json["animations"][0];
        const char* pType = std::strcmp(pPath, "rotation") == 0 ? "VEC4" : "VEC3";
        clip["samplers"].push_back({{"input", m_File.Add(times, "SCALAR")},
                                    {"output", m_File.Add(values, pType, componentType)},
                                    {"interpolation", pInterpolation}});
        clip["channels"].push_back(
            {{"sampler", clip["samplers"].size() - 1}, {"target", {{"node", node}, {"path", pPath}}}});
    }

    void AddClip() {
        AddChannel(Elbow, "rotation", {0.1, 0.37, 0.9, 1.25},
                   {0, 0, 0, 1, 0.6, 0, 0, 0.8, -0.5, -0.5, -0.5, -0.5, 0, 0.1, 0, 0.995}, "LINEAR");
        AddChannel(Hand, "rotation", {0, 0.5, 1.01}, {0, 0, 0, 1, 0, 0.6, 0, 0.8, 0.8, 0, 0, 0.6}, "STEP");
        AddChannel(Hand, "translation", {0, 0.7, 1.3}, {0, 0, 0,  0.5, 0.75,   0, 1, 2,   3,   /**/ 0, 1, 0, 1, 1,
                                                        0, 0, -2, 0,   /**/ 4, 0, 0, 0.5, 0.5, 0.5,    0, 0, 0},
                   "CUBICSPLINE");
        AddChannel(Wheel, "rotation", {0, 0.45, 0.9}, {0, 0, 0, 1, 0.6, 0, 0, 0.8, 0.96, 0, 0, 0.28}, "LINEAR", 5122);
        AddChannel(Wheel, "translation", {0.2, 1.0}, {2, 0, 1, 2, 0.5, -1}, "LINEAR");
        AddChannel(Eye, "translation", {0, 1.3}, {0, 2, 4, 3, 2, 0}, "LINEAR");
        AddChannel(Eye, "rotation", {0, 1.3},
                   {0, 0, 0, 0, 0, 0, 0, 1, 0, 0.5, 0, 0, /**/ 0, 0.5, 0, 0, 0, 0.6, 0, 0.8, 0, 0, 0, 0},
                   "CUBICSPLINE");
    }

    double Random() {
        m_Random = m_Random * 1664525u + 1013904223u;
        return static_cast<double>(m_Random >> 8) / 8388608.0 - 1.0;
    }

    void ExportClip(const char* pClip, const std::string& fileName, int fps = 30) {
        gltf::LoadOptions options;
        options.clip = pClip;
        options.fps = fps;
        const auto pScene = gltf::Load(GetPath("crane.gltf"), options, nullptr);
        EXPECT_EQ(m_Export.DoExport(GetPath(fileName).c_str(), nullptr, pScene.get(), false), 1);
    }

    GltfFile m_File;
    uint32_t m_Random = 1;
};

// What of a stored mesh the comparison needs.
struct StoredVertex {
    size_t number = 0; // in the glTF file
    glm::dvec3 position{0.0};
    VertexWeight weight; // of a rigid mesh: none
};

std::vector<StoredVertex> ReadVertices(const ra::MeshGroup& group, const char* pName, int32_t& parentBone) {
    const int32_t index = group.FindMesh(ra::Name(pName));
    if (index < 0)
        throw std::runtime_error(std::string("no mesh ") + pName);
    parentBone = group.GetParentBone(static_cast<uint32_t>(index));
    const gz::VertexSet& set =
        *group.GetMesh(static_cast<uint32_t>(index)).GetData()->GetVertexSet(ra::Mesh::Poly_High);
    std::vector<StoredVertex> vertices(set.GetSize());
    for (size_t i = 0; i < vertices.size(); ++i) {
        const auto at = [&](gz::VertexComponent component) {
            return static_cast<const char*>(set.GetData(component)) + i * set.GetStride();
        };
        glm::vec3 position;
        float u = 0.0f;
        std::memcpy(&position, at(gz::VC_Position), sizeof position);
        std::memcpy(&u, at(gz::VC_TexCoord0), sizeof u);
        vertices[i].position = position;
        vertices[i].number = static_cast<size_t>(std::lround(u * 64.0f));
        if (set.GetData(gz::VC_Weights))
            std::memcpy(static_cast<void*>(&vertices[i].weight), at(gz::VC_Weights), sizeof(VertexWeight));
    }
    return vertices;
}

glm::dvec3 Transform(const glm::dvec3& p, const glm::dmat4x3& rows) {
    return p.x * rows[0] + p.y * rows[1] + p.z * rows[2] + rows[3];
}

// From where the bone stood to where it stands: its rows are at right angles and of length 1.
glm::dvec3 Move(const glm::dvec3& p, const glm::dmat4x3& from, const glm::dmat4x3& to) {
    const glm::dvec3 d = p - from[3];
    return Transform({glm::dot(d, from[0]), glm::dot(d, from[1]), glm::dot(d, from[2])}, to);
}

glm::dvec3 MoveVertex(const StoredVertex& vertex, int32_t parentBone, const std::vector<glm::dmat4x3>& from,
                      const std::vector<glm::dmat4x3>& to) {
    if (vertex.weight.bone[0] == VertexWeight::NoBone) {
        const auto bone = static_cast<size_t>(parentBone);
        return parentBone < 0 ? vertex.position : Move(vertex.position, from[bone], to[bone]);
    }
    const auto& w = vertex.weight.weight;
    const double weights[] = {w[0], w[1], w[2], 1.0 - w[0] - w[1] - w[2]};
    glm::dvec3 sum(0.0);
    for (size_t i = 0; i < 4; ++i)
        if (const uint8_t bone = vertex.weight.bone[i]; bone != VertexWeight::NoBone)
            sum += weights[i] * Move(vertex.position, from[bone], to[bone]);
    return sum;
}

TEST_F(GltfExport, BonesStandWhereGltfPutsThemAtEveryFrame) {
    const size_t nodes[] = {Root, Elbow, Hand, Wheel};
    const char* const names[] = {"Root", "Elbow", "Hand", "Wheel"};
    const int32_t parents[] = {-1, 0, 1, -1};
    const GltfReference reference(m_File, 0);
    for (const int fps : {30, 24}) {
        ExportClip("", "Run.pvx", fps);
        const int frameCount = static_cast<int>(std::lround(1.3 * fps)) + 1;
        WithModel(
            [&](const RenderModel& model) {
                const Skeleton& skeleton = *model.GetSkeleton();
                ASSERT_EQ(skeleton.GetBoneCount(), 4u);
                for (int32_t i = 0; i < 4; ++i) {
                    EXPECT_STREQ(skeleton.GetBone(i).GetName().GetText(), names[i]);
                    EXPECT_EQ(skeleton.GetParentIndex(i), parents[i]) << names[i];
                    ExpectNear(glm::dmat4x3(skeleton.GetBone(i).GetReferenceMatrix()),
                               BoneMatrix(reference.GetWorld(nodes[i], 0.0)), names[i]);
                }
            },
            "Run.pvx");
        WithStoredAnim(
            [&](const AnimInterm& anim) {
                ASSERT_EQ(anim.GetFrameCount(), frameCount);
                for (int32_t i = 0; i < 4; ++i)
                    for (int frame = 0; frame < frameCount; ++frame)
                        ExpectNear(glm::dmat4x3(anim.GetMatrixStream(i)->GetKeys()[static_cast<size_t>(frame)].value),
                                   BoneMatrix(reference.GetWorld(nodes[i], static_cast<double>(frame) / fps)),
                                   std::string(names[i]) + " at frame " + std::to_string(frame));
            },
            "Run.pvx");
    }
}

TEST_F(GltfExport, BonesCarryTheStoredVerticesToWhereGltfPutsThem) {
    ExportClip("none", "Ref.pvx");
    ExportClip("0", "Run.pvx");
    std::vector<std::vector<glm::dmat4x3>> frames;
    WithStoredAnim(
        [&](const AnimInterm& anim) {
            frames.resize(static_cast<size_t>(anim.GetFrameCount()));
            for (size_t frame = 0; frame < frames.size(); ++frame)
                for (int32_t bone = 0; bone < 4; ++bone)
                    frames[frame].emplace_back(anim.GetMatrixStream(bone)->GetKeys()[frame].value);
        },
        "Run.pvx");
    WithModel(
        [&](const RenderModel& model) {
            std::vector<glm::dmat4x3> rest;
            for (int32_t bone = 0; bone < 4; ++bone)
                rest.emplace_back(model.GetSkeleton()->GetBone(bone).GetReferenceMatrix());
            for (const auto& [pName, node, parent] :
                 {std::tuple("Skin", Skin, -1), std::tuple("Wheel", Wheel, 3), std::tuple("Still", Still, -1)}) {
                int32_t parentBone = 0;
                const std::vector<StoredVertex> vertices = ReadVertices(*model.GetMeshGroup(), pName, parentBone);
                EXPECT_EQ(vertices.size(), s_VertexCount);
                EXPECT_EQ(parentBone, parent) << pName;
                const std::vector<glm::dvec3> atRest = GltfReference(m_File).GetVertices(node, 0.0);
                for (const StoredVertex& vertex : vertices)
                    EXPECT_LT(glm::length(vertex.position - ToGame(atRest[vertex.number])), s_Near) << pName;
                for (size_t frame = 0; frame < frames.size(); frame += 3) {
                    const std::vector<glm::dvec3> expected =
                        GltfReference(m_File, 0).GetVertices(node, static_cast<double>(frame) / 30.0);
                    for (const StoredVertex& vertex : vertices)
                        EXPECT_LT(glm::length(MoveVertex(vertex, parentBone, rest, frames[frame]) -
                                              ToGame(expected[vertex.number])),
                                  s_Near)
                            << pName << " at frame " << frame;
                }
            }
        },
        "Ref.pvx");
}

TEST_F(GltfExport, TheCameraLooksWhereGltfHasIt) {
    ExportClip("", "Run.pvx");
    const GltfReference reference(m_File, 0);
    WithStoredAnim(
        [&](const AnimInterm& anim) {
            ASSERT_EQ(anim.GetCameraCount(), 1u);
            const Anim::CameraStream& camera = anim.GetCamera(0);
            EXPECT_STREQ(camera.name.GetText(), "Eye");
            for (size_t frame = 0; frame < static_cast<size_t>(anim.GetFrameCount()); ++frame) {
                const glm::dmat3 turned = glm::mat3_cast(glm::dquat(camera.pRotation->GetKeys()[frame].value));
                const glm::dvec3 place = camera.pPosition->GetKeys()[frame].value;
                ExpectNear({turned[0], turned[1], turned[2], place},
                           CameraMatrix(reference.GetWorld(Eye, static_cast<double>(frame) / 30.0)),
                           "frame " + std::to_string(frame));
            }
        },
        "Run.pvx");
}

} // namespace
