#include <array>
#include <stdexcept>

#include <glm/gtc/constants.hpp>
#include <gmock/gmock.h>

#include "Shared/Cross/RenderAnim/BoundVolume.h"
#include "Shared/Cross/RenderAnim/RenderAnimName.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Transform.h"
#include "Shared/Cross/RenderAnim/VertexWeight.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"

using testing::ElementsAre;
using testing::FloatNear;

namespace {

void ExpectNear(const glm::vec3& actual, const glm::vec3& expected) {
    for (int i = 0; i < 3; ++i)
        EXPECT_THAT(actual[i], FloatNear(expected[i], 1e-5f)) << "component " << i;
}

TEST(Name, IsOneForOneSpelling) {
    const ra::Name name("PartsTest bone");
    EXPECT_EQ(ra::Name("PartsTest bone"), name);
    EXPECT_NE(ra::Name("partstest BONE"), name);
    EXPECT_STREQ(ra::Name::GetText(name.GetValue()), "PartsTest bone");
    ra::Name found;
    EXPECT_FALSE(ra::Name::Find("PartsTest never made", found));
    EXPECT_TRUE(ra::Name::Find("PartsTest bone", found));
    EXPECT_EQ(found, name);
    EXPECT_EQ(ra::Name(nullptr), ra::Name::INVALID);
    EXPECT_EQ(ra::Name().GetText(), nullptr);
    EXPECT_EQ(ra::Name::GetText(ra::Name::INVALID.GetValue()), nullptr);
}

TEST(BoundVolume, HoldsPointsInAnUprightBox) {
    const glm::vec3 points[] = {{1, 2, 3}, {-1, 0, 3}, {0, 4, 9}};
    BoundVolume volume;
    volume.SetFromPoints(points);
    EXPECT_TRUE(volume.IsValid());
    EXPECT_EQ(volume.GetBox().centre, glm::vec3(0, 2, 6));
    EXPECT_EQ(volume.GetBox().halfExtents, glm::vec3(1, 2, 3));
    EXPECT_FLOAT_EQ(volume.GetSphere().radius, std::sqrt(14.0f));
    volume.SetFromPoints({});
    EXPECT_FALSE(volume.IsValid());
}

TEST(BoundVolume, MergesTurnedBoxesByTheirReach) {
    const float half = std::sqrt(0.5f);
    OrientedBox turned{.centre = {10, 0, 0}, .halfExtents = {2, 1, 1}};
    turned.rotation = glm::mat3(half, half, 0, -half, half, 0, 0, 0, 1);
    BoundVolume volume;
    volume.Merge(BoundVolume());
    EXPECT_FALSE(volume.IsValid());
    volume.SetBox({.centre = {0, 0, 0}, .halfExtents = {1, 1, 1}});
    BoundVolume other;
    other.SetBox(turned);
    volume.Merge(other);
    const float reach = 3 * half;
    ExpectNear(volume.GetBox().centre + volume.GetBox().halfExtents, {10 + reach, reach, 1});
    ExpectNear(volume.GetBox().centre - volume.GetBox().halfExtents, {-1, -reach, -1});
}

TEST(VertexWeight, TheFourStrongestStayInOrder) {
    VertexWeightBuilder builder;
    builder.Add(1, 0.125f);
    builder.Add(2, 0.25f);
    builder.Add(3, 0.0625f);
    builder.Add(4, 0.25f); // behind the one of the same weight
    builder.Add(5, 0.3125f);
    EXPECT_THAT(builder.GetBones(), ElementsAre(5, 2, 4, 1));
    builder.Add(1, 0.0625f); // gains and keeps its place
    EXPECT_THAT(builder.GetWeights(), ElementsAre(0.3125f, 0.25f, 0.25f, 0.1875f));
    EXPECT_THROW(builder.Add(1, 1.5f), std::runtime_error);
    EXPECT_THROW(builder.Add(1, -0.5f), std::runtime_error);
}

TEST(VertexWeight, FinishScalesToOne) {
    VertexWeightBuilder builder;
    builder.Add(7, 0.25f);
    builder.Add(9, 0.25f);
    const VertexWeight weight = builder.Finish();
    EXPECT_THAT(weight.weight, ElementsAre(0.5f, 0.5f, 0));
    EXPECT_THAT(weight.bone, ElementsAre(7, 9, 0xFF, 0xFF));
    EXPECT_THAT(VertexWeightBuilder().Finish().weight, ElementsAre(0, 0, 0));
    builder.Add(9, 0.6f);
    EXPECT_THROW(builder.Finish(), std::runtime_error);
}

TEST(VertexWeight, TidyDropsTheWeakAndOrdersByBone) {
    ReportCapture reports;
    VertexWeightBuilder builder;
    builder.Add(9, 0.5f);
    builder.Add(3, 0.4f);
    builder.Add(6, 0.002f);
    builder.Add(5, 0.0f);
    builder.Tidy();
    EXPECT_THAT(builder.GetBones(), ElementsAre(3, 9, 0xFF, 0xFF));
    EXPECT_THAT(builder.GetWeights(), ElementsAre(0.4f, 0.5f, 0, 0));
    EXPECT_EQ(ReportCapture::CountWarnings("Rejecting bone weight for strength 0.002000"), 1u);
    EXPECT_EQ(reports.GetWarnings().size(), 1u);
}

class SkeletonTest : public testing::Test {
protected:
    // The second bone hangs on the first, which is turned a quarter about Y.
    SkeletonTest() {
        m_Skeleton.SetBoneName(0, ra::Name("hip"));
        m_Skeleton.SetBoneName(1, ra::Name("knee"));
        m_Skeleton.SetBoneName(2, ra::Name("hip"));
        m_Skeleton.SetParent(1, 0);
        m_Skeleton.SetLocalPosition(0, {0, 10, 0});
        m_Skeleton.SetLocalRotation(0, glm::angleAxis(glm::half_pi<float>(), glm::vec3(0, 1, 0)));
        m_Skeleton.SetLocalPosition(1, {1, 0, 0});
        m_Skeleton.BuildRefPose();
    }
    Skeleton m_Skeleton{3};
};

TEST_F(SkeletonTest, NamesLeadToTheFirstBone) {
    EXPECT_EQ(m_Skeleton.FindBone(ra::Name("hip")), 0);
    EXPECT_EQ(m_Skeleton.FindBone(ra::Name("foot")), -1);
    EXPECT_EQ(Skeleton(0).FindBone(ra::Name("hip")), -1);
    EXPECT_EQ(m_Skeleton.GetParentIndex(1), 0);
    m_Skeleton.SetParent(1, -1);
    EXPECT_EQ(m_Skeleton.GetParentIndex(1), -1);
    EXPECT_THROW(m_Skeleton.GetBone(-1), std::runtime_error);
    EXPECT_THROW(m_Skeleton.GetBone(3), std::runtime_error);
    EXPECT_THROW(m_Skeleton.SetBoneName(0, ra::Name::INVALID), std::runtime_error);
    EXPECT_THROW(m_Skeleton.SetParent(0, 3), std::runtime_error);
}

TEST_F(SkeletonTest, TheReferencePoseGoesDownTheChain) {
    // X of the turned bone points along -Z of the world.
    ExpectNear(m_Skeleton.GetBone(1).GetReferenceMatrix()[3], {0, 10, -1});
    const glm::mat4x3 back =
        ra::Multiply(m_Skeleton.GetBone(1).GetReferenceMatrix(), m_Skeleton.GetBone(1).GetInverseReferenceMatrix());
    for (int row = 0; row < 4; ++row)
        ExpectNear(back[row], glm::mat4x3(1.0f)[row]);
}

TEST_F(SkeletonTest, LocalDataFollowsFromTheWorldInAnyOrder) {
    Skeleton other(3);
    for (int32_t i = 0; i < 3; ++i)
        other.SetReferenceMatrix(2 - i, m_Skeleton.GetBone(i).GetReferenceMatrix());
    other.SetParent(1, 2);
    other.DeriveLocalPose();
    ExpectNear(other.GetBone(1).GetLocalPosition(), {1, 0, 0});
    EXPECT_THAT(other.GetBone(1).GetLocalRotation().w, FloatNear(1, 1e-5f));
    EXPECT_THAT(std::abs(glm::dot(other.GetBone(2).GetLocalRotation(), m_Skeleton.GetBone(0).GetLocalRotation())),
                FloatNear(1, 1e-5f));
}

TEST(Transform, AMatrixWithoutInverseGivesTheIdentity) { EXPECT_EQ(ra::Inverse(glm::mat4x3(0.0f)), glm::mat4x3(1.0f)); }

} // namespace
