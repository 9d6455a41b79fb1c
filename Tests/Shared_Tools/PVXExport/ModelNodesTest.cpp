#include "Shared_Tools/PVXExport/ModelNodes.h"

#include <glm/gtc/constants.hpp>
#include <glm/gtc/quaternion.hpp>

#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Transform.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ModelTransform.h"
#include "Shared_Tools/PVXExport/SceneWalk.h"
#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

namespace {

constexpr float s_Near = 1e-5f;

void ExpectNear(const glm::vec3& a, const glm::vec3& b) {
    EXPECT_LT(glm::length(a - b), s_Near)
        << a.x << ' ' << a.y << ' ' << a.z << " for " << b.x << ' ' << b.y << ' ' << b.z;
}

class ModelNodesTest : public ExportTest {
protected:
    void Build() {
        SceneWalk::Collect(m_Scene.GetRootNode(), m_Context, m_Collected);
        ModelNodes::AddMarkers(m_Collected, m_Context, m_Model);
        ModelNodes::AddCameras(m_Collected, m_Context, m_Model);
        ModelNodes::BuildSkeleton(m_Collected);
    }

    ExportContext m_Context;
    ExportScene m_Collected;
    RenderModel m_Model;
};

TEST(ModelTransform, LosesScaleAndChangesAxes) {
    Matrix3 m = IdentityMatrix();
    m[0] *= 2.0f;
    m[3] = {1, 2, 3};
    const glm::mat4x3 converted = ModelTransform::FromHost(m);
    ExpectNear(converted[3], {-1, 3, -2});
    for (int row = 0; row < 3; ++row) {
        EXPECT_FLOAT_EQ(glm::length(converted[row]), 1.0f);
        ExpectNear(converted[row], glm::cross(converted[(row + 1) % 3], converted[(row + 2) % 3]));
    }
    m[1] = {0, 0, 0};
    for (int row = 0; row < 4; ++row)
        EXPECT_FALSE(glm::any(glm::isnan(ModelTransform::FromHost(m)[row]))) << "a node that is scaled flat";
}

TEST(ModelTransform, LookAtHasRightAngles) {
    const glm::vec3 up(0, 1, 0);
    const glm::mat4x3 m = ModelTransform::LookAt({1, 2, 3}, {1, 2, 7}, up);
    ExpectNear(m[0], {1, 0, 0});
    ExpectNear(m[1], {0, 1, 0});
    ExpectNear(m[2], {0, 0, 1});
    ExpectNear(m[3], {1, 2, 3});
    ExpectNear(ModelTransform::LookAt({}, {}, up)[2], {1, 0, 0});
    ExpectNear(ModelTransform::LookAt({}, {0, 5, 0}, up)[0], glm::cross(glm::vec3(0, 0, 1), up));
    ExpectNear(ModelTransform::LookAt({}, {0, 0, 5}, {0, 0, 1})[1], up);
}

TEST_F(ModelNodesTest, MarkersStandRelativeToTheirBone) {
    scene::Node& bone = scene::AddBone(m_Scene, "Arm");
    bone.SetLocal({5, 0, 0}, glm::angleAxis(1.0, glm::dvec3(0, 0, 1)));
    scene::AddPoint(m_Scene, "Hand", &bone).SetLocal({0, 0, 2});
    scene::AddPoint(m_Scene, "Free").SetLocal({1, 2, 3});
    scene::AddPoint(m_Scene, "InGroup", &scene::AddDummy(m_Scene, "Group", &bone));
    Build();
    ASSERT_EQ(m_Model.GetOwnMarkers().size(), 3u);
    const Marker& hand = m_Model.GetOwnMarkers()[0];
    EXPECT_STREQ(hand.m_parentName.GetText(), "Arm");
    const glm::mat4x3 world = ra::Multiply(hand.m_transform, m_Collected.m_BoneNodes[0].transform);
    ExpectNear(world[3], {-5, 2, 0});
    const Marker& inGroup = m_Model.GetOwnMarkers()[1];
    EXPECT_STREQ(inGroup.name.GetText(), "InGroup");
    EXPECT_FALSE(inGroup.m_parentName.IsValid()) << "its parent is no bone, whatever is above";
    const Marker& free = m_Model.GetOwnMarkers()[2];
    EXPECT_FALSE(free.m_parentName.IsValid());
    ExpectNear(free.m_transform[3], {-1, 3, -2});
}

TEST_F(ModelNodesTest, CamerasLookAtTheirTarget) {
    scene::CameraSettings settings;
    settings.targetDistance = 4.0f;
    settings.fieldOfView = 0.5f;
    scene::AddCamera(m_Scene, "Free", settings).SetLocal({1, 2, 3}); // looks down the host's -Z
    settings.targetDistance = 0.0f;
    settings.manualClip = true;
    settings.nearClip = 0.01f;
    settings.farClip = 5000.0f;
    scene::AddCamera(m_Scene, "Clipped", settings);
    settings.nearClip = 2.0f;
    settings.farClip = 50.0f;
    scene::AddCamera(m_Scene, "Between", settings);
    Build();
    ASSERT_EQ(m_Model.GetCameraCount(), 3u);
    const CameraDef& free = m_Model.GetCameras()[0];
    ExpectNear(free.position, {-1, 3, -2});
    ExpectNear(free.target, {-1, -1, -2});
    EXPECT_EQ(free.fieldOfView, 0.5f);
    EXPECT_EQ(free.nearClip, 0.1f);
    EXPECT_EQ(free.farClip, 1000.0f);
    const glm::mat4x3 view = ra::MakeTransform(free.rotation, free.position);
    ExpectNear(view[2], {0, -1, 0});
    ExpectNear(m_Model.GetCameras()[1].target, {0, -1, 0});
    EXPECT_EQ(m_Model.GetCameras()[1].nearClip, 0.1f);
    EXPECT_EQ(m_Model.GetCameras()[1].farClip, 1000.0f);
    EXPECT_EQ(m_Model.GetCameras()[2].nearClip, 2.0f);
    EXPECT_EQ(m_Model.GetCameras()[2].farClip, 50.0f);
}

TEST_F(ModelNodesTest, TheSkeletonHasTheBonesPlaces) {
    scene::Node& root = scene::AddBone(m_Scene, "Root");
    root.SetLocal({1, 2, 3});
    scene::AddBone(m_Scene, "Tip", &root).SetLocal({0, 0, 1});
    Build();
    ASSERT_TRUE(m_Collected.m_Skeleton);
    EXPECT_EQ(m_Collected.m_Skeleton->GetParentIndex(0), -1);
    EXPECT_EQ(m_Collected.m_Skeleton->GetParentIndex(1), 0);
    ExpectNear(m_Collected.m_Skeleton->GetBone(1).GetReferenceMatrix()[3], {-1, 4, -2});
    EXPECT_STREQ(m_Collected.m_Skeleton->GetBone(1).GetName().GetText(), "Tip");
}

} // namespace
