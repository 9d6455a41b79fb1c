#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"

#include <cmath>

#include <gmock/gmock.h>

#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"

using testing::HasSubstr;

namespace {

class AnimChunk : public ModelFixture {
protected:
    // By hand: two bones, two controls, a camera.
    static std::string Info(uint32_t frames = 3, float duration = 0.1f) {
        return ChunkBytes::Data("INFO", PayloadBytes().U32(frames).F32({duration}).Get());
    }
    static std::string Hip() {
        return NamedData("BANM", "hip",
                         PayloadBytes()
                             .U32(2)
                             .F32({0.0f, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})
                             .F32({0.5f, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32})
                             .U8(1)
                             .Get(),
                         1);
    }
    static std::string Knee() { return NamedData("BANM", "knee", PayloadBytes().U32(0).U8(0).Get(), 1); }
    static std::string Glass() {
        return NamedData("CONS", "Glass", PayloadBytes().U32(0).U32(2).U32(4).U32(2).F32({0, 0.25f, 1, 0.75f}).Get(),
                         1);
    }
    static std::string Body() {
        return NamedData("CONS", "Body", PayloadBytes().U32(2).U32(0).U32(0).U32(1).F32({0, 1}).Get(), 1);
    }
    static std::string Camera() {
        return NamedData("CMRA", "Front",
                         PayloadBytes().U32(1).F32({0, 5, 6, 7}).U32(1).F32({0, 0.1f, 0.2f, 0.3f, 0.9f}).Get(), 1);
    }
    static std::string Anim(const std::string& children, uint32_t version = 1, uint32_t dataVersion = 1) {
        return NamedFolder("ANIM", "walk", NamedFolder("DATA", "walk", children, dataVersion), version);
    }
    static std::string Whole() { return Anim(Info() + Hip() + Knee() + Glass() + Body() + Camera()); }
    static std::string File(const std::string& children) {
        return ChunkBytes::FileHeader() + NamedFolder("QPVX", "walk", children, 1);
    }

    static std::unique_ptr<AnimInterm> MakeAnim() {
        auto pAnim = std::make_unique<AnimInterm>();
        pAnim->SetName("walk");
        pAnim->SetLength(3, 30);
        pAnim->SetBoneCount(2);
        pAnim->SetBoneName(0, ra::Name("hip"));
        pAnim->SetBoneName(1, ra::Name("knee"));
        pAnim->SetBoneAnimated(0, true);
        const std::span<MatrixKey> keys = pAnim->MakeMatrixStream(0, 2);
        keys[0] = {0, {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}}};
        keys[1] = {0.5f, {{21, 22, 23}, {24, 25, 26}, {27, 28, 29}, {30, 31, 32}}};
        AddControl(*pAnim, "Glass", {.type = ControlTarget_Shader, .channel = 4, .property = 2},
                   {{0, 0.25f}, {1, 0.75f}});
        AddControl(*pAnim, "Body", {.type = ControlTarget_Mesh}, {{0, 1}});
        auto pPosition = std::make_unique<Vec3Stream>();
        pPosition->AddKey(0, {5, 6, 7});
        auto pRotation = std::make_unique<QuatStream>();
        pRotation->AddKey(0, glm::quat(0.9f, 0.1f, 0.2f, 0.3f));
        pAnim->SetCameraStreams(pAnim->AddCamera(ra::Name("Front")), std::move(pPosition), std::move(pRotation));
        return pAnim;
    }
    static void AddControl(AnimInterm& anim, const char* pName, const ControlRef& ref,
                           std::initializer_list<FloatKey> keys) {
        auto pValues = std::make_unique<FloatStream>();
        for (const FloatKey& key : keys)
            pValues->AddKey(key.time, key.value);
        anim.SetControlStream(anim.AddControl(ra::Name(pName), ref), std::move(pValues));
    }
    static std::string Write(const AnimInterm& anim) {
        const auto pStream = MakeWriteStream();
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        ra::intermediate::WriteAnim(chunky, anim);
        return BytesOf(*pStream);
    }

    static std::unique_ptr<AnimInterm> Read(const std::string& anim) {
        const auto pStream = MakeReadStream(ChunkBytes::FileHeader() + anim);
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        return ra::intermediate::ReadAnim(chunky);
    }
    static std::string Fault(const std::string& anim) {
        try {
            Read(anim);
            return "";
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    }
    static std::unique_ptr<RenderModel> MakeModel(std::initializer_list<const char*> bones) {
        auto pModel = std::make_unique<RenderModel>();
        pModel->SetName("walker");
        pModel->SetMeshGroup(std::make_unique<ra::MeshGroup>());
        if (bones.size() > 0)
            pModel->SetSkeleton(MakeChain(bones));
        return pModel;
    }
    // As the exporter adds it.
    static void AddTo(RenderModel& model, std::unique_ptr<AnimInterm> pAnim) {
        ra::AddAnimNode(model, ra::MakeLocalNode(model, std::move(pAnim)), 1);
    }
};

TEST_F(AnimChunk, IsWrittenAndReadByteForByte) {
    EXPECT_EQ(Write(*MakeAnim()), ChunkBytes::FileHeader() + Whole());
    const std::unique_ptr<AnimInterm> pAnim = Read(Whole());
    EXPECT_EQ(pAnim->GetMatrixStream(0)->GetKey(1).value[3], glm::vec3(30, 31, 32));
    EXPECT_EQ(pAnim->GetMatrixStream(1), nullptr);
    EXPECT_EQ(pAnim->GetControl(0).ref, (ControlRef{.type = 0, .m_index = -1, .channel = 4, .property = 2}));
    EXPECT_EQ(Write(*pAnim), ChunkBytes::FileHeader() + Whole());
}

TEST_F(AnimChunk, UnknownPartsAreSteppedOver) {
    const std::string unknown = ChunkBytes::Data("WHAT", "ever", 99) + ChunkBytes::Folder("BANM", "", 99);
    EXPECT_EQ(Read(Anim(unknown + Info() + unknown + Hip()))->GetBoneCount(), 1u);
}

TEST_F(AnimChunk, EachFaultIsToldWithItsPlace) {
    const auto bone = [](const PayloadBytes& payload) {
        return Anim(Info() + NamedData("BANM", "hip", payload.Get(), 1));
    };
    const auto control = [](const PayloadBytes& payload) {
        return Anim(Info() + NamedData("CONS", "Glass", payload.Get(), 1));
    };
    const std::string key(52, '\0');
    EXPECT_EQ(Fault(Anim(Hip())), "Missing Chunk Type!");
    EXPECT_EQ(Fault(Anim(Info(), 2)), "Unsupported (newer) Chunk Version!");
    EXPECT_EQ(Fault(Anim(Info(), 1, 2)), "Unsupported (newer) Chunk Version!");
    EXPECT_EQ(Fault(Anim(Info(0))), "animation 'walk': frame count 0 isn't above 0");
    EXPECT_EQ(Fault(Anim(Info(0x80000000))), "animation 'walk': frame count -2147483648 isn't above 0");
    EXPECT_THAT(Fault(Anim(Info(3, 0))), HasSubstr("animation 'walk': duration 0.000000 isn't above 0"));
    EXPECT_THAT(Fault(Anim(Info(3, std::nanf("")))), HasSubstr("isn't above 0"));
    EXPECT_EQ(Fault(Anim(ChunkBytes::Data("INFO", "1234"))), "animation 'walk': duration goes beyond its chunk");
    EXPECT_EQ(Fault(Anim(Info() + NamedData("BANM", "", key, 1))), "animation 'walk', bone '': name is empty");
    EXPECT_EQ(Fault(bone(PayloadBytes().U32(2).Add(key).U8(1))),
              "animation 'walk', bone 'hip': key count 2 exceeds its chunk");
    EXPECT_EQ(Fault(bone(PayloadBytes().U32(0xFFFFFFFF).Add(key))),
              "animation 'walk', bone 'hip': key count 4294967295 exceeds its chunk");
    EXPECT_EQ(Fault(bone(PayloadBytes().U32(1).Add(key))),
              "animation 'walk', bone 'hip': animated mark goes beyond its chunk");
    EXPECT_EQ(Fault(control(PayloadBytes().U32(0).U32(0))),
              "animation 'walk', control 'Glass': channel goes beyond its chunk");
    EXPECT_EQ(Fault(control(PayloadBytes().U32(0).U32(0).U32(0).U32(2).F32({0.5f, 0, 0.25f, 0}))),
              "animation 'walk', control 'Glass': key 1 is earlier than the one before it");
    EXPECT_EQ(Fault(control(PayloadBytes().U32(0).U32(0).U32(0).U32(65536).Add(std::string(65536 * 8, '\0')))),
              "animation 'walk', control 'Glass': key count 65536 exceeds 65535");
    EXPECT_EQ(Fault(control(PayloadBytes().U32(0).U32(0).U32(0).U32(65535).Add(std::string(65535 * 8, '\0')))), "");
    EXPECT_EQ(Fault(Anim(Info() + NamedData("CMRA", "Front", PayloadBytes().U32(0).U32(1).F32({0, 0, 0, 1}).Get(), 1))),
              "animation 'walk', camera 'Front': rotation key count 1 exceeds its chunk");
}

TEST_F(AnimChunk, EveryTruncationIsRefused) { ExpectEveryTruncationRefused(Whole(), Read); }

TEST_F(AnimChunk, ABoneWithoutNameIsAMistakeOfTheWriter) {
    AnimInterm anim;
    anim.SetName("walk");
    anim.SetBoneCount(1);
    EXPECT_THROW(Write(anim), std::runtime_error);
}

// A file of a model: the animations stand behind all else, and alone when nothing else is asked for.
TEST_F(AnimChunk, StandsInAModelsFile) {
    auto pModel = MakeModel({"hip", "knee"});
    AddTo(*pModel, Read(Whole()));
    AddTo(*pModel, Read(Whole()));
    const auto write = [&](const ra::IntermediateParts& parts) {
        const auto pStream = MakeWriteStream();
        ra::WriteIntermediate(*pStream, *pModel, parts);
        return BytesOf(*pStream);
    };
    pModel->SetName("walk");
    EXPECT_EQ(write({.meshes = false}), File(Whole() + Whole()));
    EXPECT_EQ(write({.meshes = false, .animKeys = false}), File(""));
    const std::string all = write({});
    EXPECT_TRUE(all.ends_with(Whole() + Whole()));
    const std::string bare = write({.animKeys = false});
    EXPECT_EQ(bare.size(), all.size() - 2 * Whole().size());
    pModel.reset();
    Inv::PurgeUnreferenced();
    pModel = ra::ReadIntermediate(*MakeReadStream(all));
    ASSERT_NE(pModel, nullptr);
    ASSERT_EQ(pModel->GetAnimList()->GetCount(), 2u);
    EXPECT_THAT(pModel->GetAnimList()->GetNode(1)->m_BoneMappings, testing::ElementsAre(0, 1));
    EXPECT_EQ(write({.animKeys = false}), bare);
    // Its keys are no longer in the world.
    EXPECT_THROW(write({}), std::runtime_error);
}

} // namespace
