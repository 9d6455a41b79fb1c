#include "Shared_Tools/PVXExport/ModelNodes.h"

#include <span>

#include <glm/gtc/quaternion.hpp>

#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Transform.h"
#include "Shared_Tools/PVXExport/ExportContext.h"
#include "Shared_Tools/PVXExport/ModelTransform.h"
#include "Shared_Tools/PVXExport/SceneWalk.h"
#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

namespace {

void ExpectNear(const glm::vec3& a, const glm::vec3& b) {
    EXPECT_LT(glm::length(a - b), 1e-5f) << a.x << ' ' << a.y << ' ' << a.z << " for " << b.x << ' ' << b.y << ' '
                                         << b.z;
}

class ModelNodesTest : public ExportTest {
protected:
    void Build() {
        SceneWalk::Collect(m_Scene.GetRootNode(), m_Context, m_Collected);
        ModelNodes::AddMarkers(m_Collected, m_Context, m_Model);
        ModelNodes::AddCameras(m_Collected, m_Context, m_Model);
    }

    ExportContext m_Context;
    ExportScene m_Collected;
    RenderModel m_Model;
};

TEST(ModelTransform, FourAreConvertedAsEachByItself) {
    ModelTransform::FourMatrices four = {IdentityMatrix(), IdentityMatrix(), IdentityMatrix(), Matrix3(0.5f)};
    four[1][0] *= 2.0f;
    four[1][3] = {1, 2, 3};
    four[2][1] = {0, 0, 0}; // of a node that is scaled flat
    const ModelTransform::FourMatrices alone = four;
    ModelTransform::FromHost(four);
    for (size_t i = 0; i < four.size(); ++i)
        EXPECT_EQ(four[i], ModelTransform::FromHost(alone[i])) << i << ": no number is a NaN either";
    ExpectNear(four[1][0], {1, 0, 0});
    ExpectNear(four[1][3], {-1, 3, -2});
}

TEST(ModelTransform, LookAtHasRightAngles) {
    const glm::vec3 up(0, 1, 0);
    EXPECT_EQ(ModelTransform::LookAt({1, 2, 3}, {1, 2, 7}, up), glm::mat4x3({1, 0, 0}, up, {0, 0, 1}, {1, 2, 3}));
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
    ExpectNear(ra::Multiply(hand.m_transform, m_Collected.m_BoneNodes[0].transform)[3], {-5, 2, 0});
    EXPECT_STREQ(m_Model.GetOwnMarkers()[1].name.GetText(), "InGroup");
    EXPECT_FALSE(m_Model.GetOwnMarkers()[1].m_parentName.IsValid()) << "its parent is no bone, whatever is above";
    EXPECT_FALSE(m_Model.GetOwnMarkers()[2].m_parentName.IsValid());
    ExpectNear(m_Model.GetOwnMarkers()[2].m_transform[3], {-1, 3, -2});
}

TEST_F(ModelNodesTest, CamerasLookAtTheirTarget) {
    scene::CameraSettings settings;
    settings.targetDistance = 4.0f;
    settings.fieldOfView = 0.5f;
    scene::AddCamera(m_Scene, "Free", settings).SetLocal({1, 2, 3}); // looks down the host's -Z
    settings.targetDistance = 0.0f;
    settings.manualClip = true;
    for (const auto& [nearest, farthest] : {std::pair(0.01f, 5000.0f), {2.0f, 50.0f}}) {
        settings.nearClip = nearest;
        settings.farClip = farthest;
        scene::AddCamera(m_Scene, "Clipped", settings);
    }
    Build();
    ASSERT_EQ(m_Model.GetCameraCount(), 3u);
    const std::span<const CameraDef> cameras = m_Model.GetCameras();
    ExpectNear(cameras[0].position, {-1, 3, -2});
    ExpectNear(cameras[0].target, {-1, -1, -2});
    ExpectNear(ra::MakeTransform(cameras[0].rotation, cameras[0].position)[2], {0, -1, 0});
    EXPECT_EQ(cameras[0].fieldOfView, 0.5f);
    ExpectNear(cameras[1].target, {0, -1, 0});
    const std::pair<float, float> clips[] = {{0.1f, 1000.0f}, {0.1f, 1000.0f}, {2.0f, 50.0f}};
    for (size_t i = 0; i < 3; ++i)
        EXPECT_EQ(std::pair(cameras[i].nearClip, cameras[i].farClip), clips[i]) << i;
}

} // namespace
