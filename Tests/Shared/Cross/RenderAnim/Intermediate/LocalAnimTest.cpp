#include "Shared/Cross/RenderAnim/Intermediate/LocalAnim.h"

#include <cmath>

#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Intermediate/AppendAnims.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"
#include <glm/gtc/matrix_transform.hpp>
#include <glm/gtc/quaternion.hpp>

namespace {

// In double precision, and by the library's operations, which aren't the system's.
glm::dmat4 Turn(double degrees, const glm::dvec3& place) {
    return glm::rotate(glm::translate(glm::dmat4(1), place), glm::radians(degrees), glm::dvec3(0, 0, 1));
}

glm::mat4x3 ToFloats(const glm::dmat4& m) { return glm::mat4x3(glm::mat4(m)); }

class LocalAnim : public ModelFixture {
protected:
    LocalAnim() {
        m_pModel = std::make_unique<RenderModel>();
        m_pModel->SetName("walker");
        const ShaderRef glass = MakeShader("Glass");
        glass->SetChannelColour(0, Colour::FromValue(0x11223344)); // second byte 0x33, alpha 0x11
        glass->SetChannelColour(4, Colour::FromValue(0x66778899));
        glm::mat4 moved(1.0f);
        moved[3] = {0.25f, -0.5f, 0, 1};
        glass->SetChannelBakedMatrix(0, moved);
        m_pModel->SetMeshGroup(MakeGroup({MakeMesh("Body", {glass}), MakeMesh("Wheel", {glass})}));
        m_pModel->SetSkeleton(MakeChain({"hip", "knee", "toe"}));
        m_pModel->AddCamera({.name = ra::Name("Back")});
        m_pModel->AddCamera({.name = ra::Name("Front")});
        m_Interm.SetName("run");
        m_Interm.SetBoneCount(3);
        int32_t bone = 0;
        for (const char* pName : {"hip", "knee", "toe"}) {
            m_Interm.SetBoneName(bone, ra::Name(pName));
            m_Interm.SetBoneAnimated(bone++, true);
        }
    }
    ~LocalAnim() override { Forget(std::move(m_pModel)); }

    void AddControl(const char* pName, const ControlRef& ref, const std::vector<float>& values) {
        auto pValues = std::make_unique<FloatStream>();
        const std::span<FloatKey> keys = pValues->SetKeyCount(static_cast<uint32_t>(values.size()));
        float time = 0;
        size_t i = 0;
        for (const float value : values)
            keys[i++] = {time += 0.125f, value};
        m_Interm.SetControlStream(m_Interm.AddControl(ra::Name(pName), ref), std::move(pValues));
    }
    // Writes the animation and reads it for the model.
    const Anim& Append() {
        return Append(
            WriteChunks([&](Chunky& chunky, PayloadWriter&) { ra::intermediate::WriteAnim(chunky, m_Interm); }));
    }
    const Anim& Append(const std::string& chunk) {
        ReadChunks(chunk, [&](Chunky& chunky) { ra::intermediate::AppendAnim(chunky, *m_pModel); });
        return *GetLastNode().GetAnim().GetData();
    }
    const AnimListNode& GetLastNode() const {
        const AnimList& list = *m_pModel->GetAnimList();
        return *list.GetNode(list.GetCount() - 1);
    }
    static const FloatStream* FindValues(const Anim& anim, const char* pName, const ControlRef& ref) {
        const int32_t index = anim.FindControl(ra::Name(pName), ref);
        return index >= 0 ? anim.GetControl(index).pValues.get() : nullptr;
    }

    std::unique_ptr<RenderModel> m_pModel;
    AnimInterm m_Interm;
};

// Each bone turns and moves in its parent; what comes out is what was put in.
TEST_F(LocalAnim, KeysBecomeRelativeToTheParent) {
    constexpr uint32_t keyCount = 7;
    const auto local = [](int bone, uint32_t i) {
        return Turn(bone * 10 + i * 25.0, {bone + 1.0, i * 0.5, bone * i * 1.0});
    };
    for (int bone = 0; bone < 3; ++bone) {
        const std::span<MatrixKey> keys = m_Interm.MakeMatrixStream(bone, keyCount);
        for (uint32_t i = 0; i < keyCount; ++i) {
            glm::dmat4 world = local(0, i);
            for (int child = 1; child <= bone; ++child)
                world *= local(child, i);
            keys[i] = {static_cast<float>(i) / 5 - 0.1f, ToFloats(world)}; // -0.1 to 1.1
        }
    }
    const Anim& anim = Append();
    for (int bone = 0; bone < 3; ++bone) {
        const Anim::BoneStream& streams = anim.GetBone(bone);
        ASSERT_EQ(streams.pPosition->GetKeyCount(), keyCount);
        ASSERT_EQ(streams.pRotation->GetKeyCount(), keyCount);
        for (uint32_t i = 0; i < keyCount; ++i) {
            const Vec3Key position = streams.pPosition->GetKey(i);
            const QuatKey rotation = streams.pRotation->GetKey(i);
            EXPECT_EQ(position.time, std::clamp(static_cast<float>(i) / 5 - 0.1f, 0.0f, 1.0f));
            EXPECT_EQ(rotation.time, position.time);
            const double angle = (bone * 10 + i * 25.0) * std::acos(-1.0) / 360;
            EXPECT_NEAR(position.value.x, bone + 1, 1e-5);
            EXPECT_NEAR(position.value.y, i * 0.5, 1e-5);
            EXPECT_NEAR(position.value.z, bone * i, 1e-5);
            EXPECT_NEAR(rotation.value.z, std::sin(angle), 1e-5);
            EXPECT_NEAR(rotation.value.w, std::cos(angle), 1e-5);
        }
    }
    EXPECT_THAT(GetLastNode().m_BoneMappings, testing::ElementsAre(0, 1, 2));
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
}

TEST_F(LocalAnim, RotationsNeverJumpInSign) {
    // At rest the bone is turned by 340 degrees, which is q(170), and it goes on through a whole turn.
    m_pModel->GetSkeleton()->SetLocalRotation(0, glm::angleAxis(glm::radians(340.0f), glm::vec3(0, 0, 1)));
    const std::span<MatrixKey> keys = m_Interm.MakeMatrixStream(0, 72);
    for (size_t i = 0; i < keys.size(); ++i)
        keys[i] = {static_cast<float>(i) / 72, ToFloats(Turn(350.0 + static_cast<double>(i) * 10, {0, 0, 0}))};
    const std::span<const QuatKey> rotations = Append().GetBone(0).pRotation->GetKeys();
    EXPECT_NEAR(rotations[0].value.w, std::cos(glm::radians(175.0f)), 1e-5);
    for (size_t i = 1; i < rotations.size(); ++i)
        EXPECT_GT(glm::dot(rotations[i - 1].value, rotations[i].value), 0.99f) << i;
}

TEST_F(LocalAnim, ABoneWithoutAnimatedParentStaysInTheWorld) {
    m_Interm.SetBoneAnimated(2, false);
    for (const int bone : {1, 2})
        m_Interm.MakeMatrixStream(bone, 1)[0] = {0, ToFloats(Turn(0, {5, 6, 7}))};
    const Anim& anim = Append();
    EXPECT_TRUE(ReportCapture::HasWarning("'run': The bone knee's parent bone does not have animation keys - the "
                                          "skeleton hierarchy does not match the REF skeleton!"));
    EXPECT_EQ(anim.GetBone(1).pPosition->GetKey(0).value, glm::vec3(5, 6, 7));
    // Neither one without keys nor one that isn't animated has streams.
    EXPECT_EQ(anim.GetBone(0).pPosition, nullptr);
    EXPECT_EQ(anim.GetBone(2).pPosition, nullptr);
    EXPECT_EQ(anim.GetBone(2).pRotation, nullptr);
}

TEST_F(LocalAnim, BonesAreFoundByName) {
    const std::string none = PayloadBytes().U32(0).U8(1).Get();
    const std::string children = ChunkBytes::Data("INFO", PayloadBytes().U32(2).F32({0.5f}).Get()) +
                                 NamedData("BANM", "toe", none, 1) + NamedData("BANM", "wing", "damaged", 1);
    const std::string chunk = NamedFolder("ANIM", "run", NamedFolder("DATA", "run", children, 1), 1);
    const Anim& anim = Append(chunk);
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to find bone wing in skeleton, ignoring it!"));
    ASSERT_EQ(anim.GetBoneCount(), 3u);
    EXPECT_EQ(anim.GetBone(1).name, ra::Name("knee"));
    EXPECT_FALSE(anim.GetBone(1).isAnimated);
    EXPECT_TRUE(anim.GetBone(2).isAnimated);
    m_pModel->SetSkeleton(nullptr);
    EXPECT_EQ(FaultOf([&] { Append(chunk); }),
              "Trying to load bone stream, but render model doesn't have a skeleton.  Make sure you aren't trying to "
              "merge an animation with a ref file that doesn't have a skeleton");
    EXPECT_EQ(m_pModel->GetAnimList()->GetCount(), 1u);
}

TEST_F(LocalAnim, AShadersValuesAreOffsetsToItsOwn) {
    const float colour = 0x33 / 255.0f;
    const float alpha = 0x66 / 255.0f;
    struct Case {
        int32_t channel;
        int32_t property;
        std::vector<float> values;
        std::vector<float> offsets; // empty for a stream that isn't kept
    };
    const std::vector<Case> cases = {
        {0, ControlProperty_Amount, {colour, 1}, {0, 1 - colour}},
        {4, ControlProperty_Amount, {alpha, 0}, {0, -alpha}},
        {0, ControlProperty_OffsetU, {0, 1}, {-0.25f, 0.75f}},
        {0, ControlProperty_OffsetV, {-0.5f, 1}, {0, 1.5f}},
        {0, ControlProperty_ScaleU, {0.0f, 0.5f}, {0.0f, 0.5f}},
        {1, ControlProperty_OffsetU, {0.005f, -0.005f}, {}},
        {1, ControlProperty_OffsetV, {0.0051f, 0}, {0.0051f, 0}},
        {2, ControlProperty_OffsetV, {-0.0051f}, {-0.0051f}},
        {3, ControlProperty_Amount, {0.004f, 0.001f}, {}},
        {5, ControlProperty_OffsetV, {}, {}},
        {99, ControlProperty_Amount, {1}, {1}},
        {-1, ControlProperty_OffsetU, {1}, {1}},
    };
    for (const Case& test : cases)
        AddControl("Glass", {.channel = test.channel, .property = test.property}, test.values);
    const Anim& anim = Append();
    for (const Case& test : cases) {
        SCOPED_TRACE(testing::Message() << test.channel << ' ' << test.property);
        const FloatStream* pValues = FindValues(anim, "Glass", {.channel = test.channel, .property = test.property});
        ASSERT_EQ(pValues != nullptr, !test.offsets.empty());
        for (uint32_t i = 0; i < test.offsets.size(); ++i)
            EXPECT_FLOAT_EQ(pValues->GetKey(i).value, test.offsets[i]);
    }
    EXPECT_TRUE(m_pModel->GetAnimList()->IsShaderAnimated(0));
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
}

TEST_F(LocalAnim, StreamsOfWhatTheModelLacksAreLeftOut) {
    AddControl("Mud", {.type = ControlTarget_Shader}, {1, 0});
    AddControl("Wing", {.type = ControlTarget_Mesh}, {1, 0});
    AddControl("Other", {.type = 7}, {1, 0});
    const Anim& anim = Append();
    EXPECT_TRUE(ReportCapture::HasWarning("Could not find shader 'Mud' in model 'walker' for animation 'run'"));
    EXPECT_TRUE(ReportCapture::HasWarning("Could not find mesh 'Wing' in model 'walker' for animation 'run'"));
    EXPECT_EQ(FindValues(anim, "Mud", {.type = ControlTarget_Shader}), nullptr);
    EXPECT_EQ(FindValues(anim, "Wing", {.type = ControlTarget_Mesh}), nullptr);
    EXPECT_NE(FindValues(anim, "Other", {.type = 7}), nullptr);
}

TEST_F(LocalAnim, EveryMeshGetsAVisibility) {
    AddControl("Wheel", {.type = ControlTarget_Mesh}, {0, 0.001f}); // which may well stay at 0
    AddControl("Body", {.type = ControlTarget_Mesh, .channel = 1}, {1});
    m_Interm.AddCamera(ra::Name("Front"));
    const Anim& anim = Append();
    EXPECT_EQ(anim.GetControlCount(), 3u);
    const FloatStream* pBody = FindValues(anim, "Body", {.type = ControlTarget_Mesh});
    ASSERT_NE(pBody, nullptr);
    ASSERT_EQ(pBody->GetKeyCount(), 1);
    EXPECT_EQ(pBody->GetKey(0).time, 0);
    EXPECT_EQ(pBody->GetKey(0).value, 0);
    EXPECT_EQ(FindValues(anim, "Wheel", {.type = ControlTarget_Mesh})->GetKeyCount(), 2);
    EXPECT_THAT(GetLastNode().m_CameraMappings, testing::ElementsAre(-1, 0));
    EXPECT_THAT(GetLastNode().m_ControlMappings, testing::ElementsAre(1, 0, 0));
}

} // namespace
