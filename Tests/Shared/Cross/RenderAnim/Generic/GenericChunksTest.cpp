// The chunks that are the generic form's own, typed by hand at every version that is read.
#include <cmath>

#include "Tests/Shared/Cross/RenderAnim/Generic/GenericFixture.h"

using testing::HasSubstr;

namespace {

class GenericChunks : public GenericFixture {
protected:
    static std::unique_ptr<RenderModel> ReadAnim(const std::string& anim) {
        return Read(File(TwoBones() + MakeEmptyGroup() + NamedData("CMRA", "Front", std::string(44, '\0'), 1) + anim));
    }
    static std::string FileFault(const std::string& children) {
        return FaultOf([&] { Read(File(children)); });
    }
    static std::string AnimFault(const std::string& anim) {
        return FaultOf([&] { ReadAnim(anim); });
    }
    static std::string BoneFault(const PayloadBytes& payload, uint32_t count = 1) {
        return FileFault(Bones(NamedData("BONE", "hip", payload.Get(), 5), count) + MakeEmptyGroup());
    }
};

TEST_F(GenericChunks, BonesOfEveryVersionAreRead) {
    // A quarter turn about z: rows (0 1 0), (-1 0 0), (0 0 1).
    const auto old = [](uint32_t version) {
        PayloadBytes payload;
        payload.F32({99});
        if (version < 2)
            payload.F32({98, 97, 96});
        payload.U32(0xFFFFFFFF).F32({0, 1, 0, -1, 0, 0, 0, 0, 1, 5, 6, 7});
        if (version < 4)
            payload.F32({1, 2, 3, 4, 5, 6});
        if (version < 3)
            payload.U32(12);
        return NamedData("BONE", "hip", payload.Get(), version);
    };
    for (const uint32_t version : {0u, 1u, 2u, 3u, 4u}) {
        SCOPED_TRACE(version);
        const auto pModel =
            Read(File(Bones(old(version) + Bone("knee", 0), 2, std::min(version, 3u)) + MakeEmptyGroup()));
        const Skeleton& skeleton = *pModel->GetSkeleton();
        EXPECT_EQ(skeleton.GetBone(0).GetName(), ra::Name("hip"));
        EXPECT_EQ(skeleton.GetBone(0).GetLocalPosition(), glm::vec3(5, 6, 7));
        EXPECT_NEAR(skeleton.GetBone(0).GetLocalRotation().z, std::sqrt(0.5f), 1e-6);
        EXPECT_NEAR(skeleton.GetBone(0).GetLocalRotation().w, std::sqrt(0.5f), 1e-6);
        EXPECT_EQ(skeleton.GetParentIndex(0), -1);
        EXPECT_EQ(skeleton.GetParentIndex(1), 0);
        EXPECT_EQ(skeleton.GetBone(1).GetLocalRotation(), glm::quat(0.8f, 0, 0, 0.6f));
        // (1, 2, 3) turned and moved.
        const glm::vec3 place = skeleton.GetBone(1).GetReferenceMatrix()[3];
        EXPECT_LT(glm::distance(place, glm::vec3(3, 7, 10)), 1e-5f);
    }
}

TEST_F(GenericChunks, BonesAreChecked) {
    const auto bone = [](uint32_t parent) { return PayloadBytes().U32(parent).F32({0, 0, 0}).F32({0, 0, 0, 1}); };
    EXPECT_EQ(BoneFault(bone(0)), "bone 'hip': parent 0 is no other bone");
    EXPECT_EQ(BoneFault(bone(1)), "bone 'hip': parent 1 is no other bone");
    EXPECT_EQ(BoneFault(bone(0xFFFFFFFE)), "bone 'hip': parent -2 is no other bone");
    EXPECT_EQ(BoneFault(bone(0xFFFFFFFF).U32(0)), "");
    EXPECT_EQ(BoneFault(bone(0xFFFFFFFF), 0), "");
    EXPECT_EQ(BoneFault(bone(0xFFFFFFFF), 2), "skeleton: bone count 2 exceeds its chunk");
    EXPECT_EQ(BoneFault(bone(0xFFFFFFFF), 0xFFFFFFFF), "skeleton: bone count 4294967295 exceeds its chunk");
    EXPECT_EQ(FileFault(Bones(Bone("hip", 0xFFFFFFFF, 6), 1)), "Unsupported (newer) Chunk Version!");
    EXPECT_EQ(FileFault(TwoBones() + TwoBones()), "there is a second skeleton in the file");
    EXPECT_EQ(FileFault(MakeEmptyGroup() + MakeEmptyGroup()), "there is a second mesh group in the file");
}

TEST_F(GenericChunks, LengthsOfEveryVersionAreRead) {
    const auto old = [](uint32_t version, uint32_t first = 10, uint32_t last = 39, float rate = 15) {
        PayloadBytes payload;
        if (version < 2)
            payload.U32(77);
        payload.U32(first).U32(last).F32({rate});
        if (version < 4)
            payload.F32({1, 2, 3, 4, 5, 6});
        if (version < 3)
            payload.U32(78);
        if (version < 4)
            payload.F32({1, 2, 3, 4, 5, 6});
        return ChunkBytes::Data("INFO", payload.Get(), version);
    };
    for (const uint32_t version : {1u, 2u, 3u, 4u}) {
        SCOPED_TRACE(version);
        const auto pModel = ReadAnim(Anim("run", old(version), std::min(version, 3u)));
        EXPECT_EQ(GetAnim(*pModel).GetFrameCount(), 30);
        EXPECT_EQ(GetAnim(*pModel).GetDuration(), 2.0f);
    }
    const std::pair<std::string, const char*> faults[] = {
        {old(4, 1, 0), "animation 'run': frame count 0 isn't above 0"},
        {old(4, 0x80000000, 0x7FFFFFFF), "animation 'run': frame count 4294967296 is above 2147483647"},
        {old(4, 0, 1, -1), "animation 'run': duration -2.000000 isn't above 0"},
        {ChunkBytes::Data("INFO", "1234", 5), "animation 'run': duration goes beyond its chunk"},
        {ChunkBytes::Data("INFO", std::string(12, '\0'), 6), "Unsupported (newer) Chunk Version!"},
    };
    for (const auto& [info, pFault] : faults)
        EXPECT_EQ(AnimFault(Anim("run", info)), pFault);
}

TEST_F(GenericChunks, StreamsOfEveryVersionAreRead) {
    const auto bone = [](const char* pName, PayloadBytes payload, uint32_t version) {
        payload.U32(1).F32({0.5f, 1, 2, 3}).U32(2).F32({0, 0, 0, 0, 1}).F32({1, 0, 0, 1, 0});
        return NamedData("BANM", pName, version < 2 ? payload.U32(1).Get() : payload.U8(1).Get(), version);
    };
    const auto control = [](uint32_t kind, uint32_t version) {
        return NamedData("CANM", "Clay", PayloadBytes().U32(kind).U32(3).U32(2).U32(1).F32({0.5f, 0.25f}).Get(),
                         version);
    };
    for (const uint32_t version : {1u, 2u}) {
        SCOPED_TRACE(version);
        const auto pModel = ReadAnim(Anim("run", Info() + bone("knee", {}, version) + control(0, version) +
                                                     control(2, version) + ChunkBytes::Data("WHAT", "ever")));
        const ::Anim& anim = GetAnim(*pModel);
        ASSERT_EQ(anim.GetBoneCount(), 2u);
        EXPECT_TRUE(anim.GetBone(1).isAnimated);
        EXPECT_FALSE(anim.GetBone(0).isAnimated);
        EXPECT_EQ(anim.GetBone(0).pPosition, nullptr);
        EXPECT_EQ(anim.GetBone(1).pPosition->GetKey(0).time, 0.5f);
        EXPECT_EQ(anim.GetBone(1).pPosition->GetKey(0).value, glm::vec3(1, 2, 3));
        EXPECT_EQ(anim.GetBone(1).pRotation->GetKey(1).value, glm::quat(0, 0, 0, 1));
        ASSERT_EQ(anim.GetControlCount(), 2u);
        EXPECT_EQ(anim.GetControl(0).ref, (ControlRef{.type = 0, .channel = 2, .property = 3}));
        EXPECT_EQ(anim.GetControl(0).pValues->GetKey(0).value, version < 2 ? 1.25f : 0.25f);
        EXPECT_EQ(anim.GetControl(1).pValues->GetKey(0).value, 0.25f);
    }
    const auto still =
        ReadAnim(Anim("run", Info() + NamedData("BANM", "hip", PayloadBytes().U32(0).U32(0).U32(0xFFFFFFFF).Get(), 1)));
    EXPECT_FALSE(GetAnim(*still).GetBone(0).isAnimated);
}

TEST_F(GenericChunks, StreamsAreChecked) {
    EXPECT_EQ(AnimFault(Anim("run", Info() + NamedData("BANM", "hip", PayloadBytes().U32(9).Get(), 2))),
              "animation 'run', bone 'hip': position key count 9 exceeds its chunk");
    // A bone that isn't there is a mistake of whoever wrote the file.
    EXPECT_THAT(AnimFault(Anim("run", Info() + NamedData("BANM", "wing", "", 2))),
                HasSubstr("boneIndex != InvalidIndex"));
    const std::string camera = PayloadBytes().U32(0).U32(0).Get();
    const auto pModel =
        ReadAnim(Anim("run", Info() + NamedData("CMRA", "Front", camera, 1) + NamedData("CMRA", "Back", camera, 1)));
    EXPECT_EQ(GetAnim(*pModel).GetCameraCount(), 1u);
    EXPECT_TRUE(ReportCapture::HasWarning("Could not find camera 'Back' in model 'Walker' for animation 'run'"));
    EXPECT_EQ(AnimFault(NamedFolder("ANIM", "run", "", 2)), "Missing Chunk Type! (data of animation 'run')");
    EXPECT_EQ(AnimFault(NamedFolder("ANIM", "run", "", 3)), "Unsupported (newer) Chunk Version!");
    EXPECT_EQ(AnimFault(Anim("run", Info(), 4)), "Unsupported (newer) Chunk Version!");
    EXPECT_EQ(AnimFault(XRef("run", std::string(259, 'x'), "run")), "");
    EXPECT_EQ(AnimFault(XRef("run", std::string(260, 'x'), "run")), "String buffer overrun!");
}

TEST_F(GenericChunks, WhatIsWrittenIsAsTyped) {
    RenderModel model;
    model.SetName("Walker");
    model.SetMeshGroup(std::make_unique<ra::MeshGroup>());
    auto pSkeleton = std::make_unique<Skeleton>(2);
    for (const int32_t i : {0, 1}) {
        pSkeleton->SetBoneName(i, ra::Name(i == 0 ? "hip" : "knee"));
        pSkeleton->SetParent(i, i - 1);
        pSkeleton->SetLocalPosition(i, {1, 2, 3});
        pSkeleton->SetLocalRotation(i, glm::quat(0.8f, 0, 0, 0.6f));
    }
    model.SetSkeleton(std::move(pSkeleton));
    AddAnim(model, "run").SetBounds({-1, -2, -3}, {4, 5, 6});
    PayloadBytes moving;
    moving.U32(2).F32({0, 1, 2, 3, 1, 4, 5, 6}).U32(2).F32({0, 0, 0, 0, 1, 1, 1, 0, 0, 0}).U8(1);
    const std::string streams =
        Info() + NamedData("BANM", "hip", PayloadBytes().U32(0).U32(0).U8(0).Get(), 2) +
        NamedData("BANM", "knee", moving.Get(), 2) +
        NamedData("CANM", "Body", PayloadBytes().U32(2).U32(0).U32(0).U32(2).F32({0, 0, 1, 1}).Get(), 2) +
        NamedData("CANM", "Clay", PayloadBytes().U32(0).U32(2).U32(4).U32(2).F32({0, 0.25f, 1, 0.5f}).Get(), 2) +
        NamedData("CMRA", "Front", PayloadBytes().U32(2).F32({0, 7, 8, 9, 1, 0, 0, 0}).U32(0).Get(), 1);
    const std::string anim =
        NamedFolder("ANIM", "run",
                    NamedFolder("DATA", "run", streams, 3) +
                        NamedData("ANBV", "run", PayloadBytes().F32({-1, -2, -3, 4, 5, 6}).Get(), 1),
                    2);
    EXPECT_EQ(Write(model), File(TwoBones() + MakeEmptyGroup() + anim));
}

} // namespace
