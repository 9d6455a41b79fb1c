#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"

#include <cmath>

#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
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
    static std::string Write(const AnimInterm& anim) {
        return WriteChunks([&](Chunky& chunky, PayloadWriter&) { ra::intermediate::WriteAnim(chunky, anim); });
    }
    static std::unique_ptr<AnimInterm> Read(const std::string& anim) {
        return ReadChunks(anim, ra::intermediate::ReadAnim);
    }
    static std::string Fault(const std::string& anim) {
        return FaultOf([&] { Read(anim); });
    }
};

TEST_F(AnimChunk, IsReadAndWrittenByteForByte) {
    const std::unique_ptr<AnimInterm> pAnim = Read(Whole());
    EXPECT_STREQ(pAnim->GetName(), "walk");
    EXPECT_EQ(pAnim->GetFrameCount(), 3);
    EXPECT_TRUE(pAnim->GetBone(0).isAnimated);
    EXPECT_EQ(pAnim->GetMatrixStream(0)->GetKey(1).value[3], glm::vec3(30, 31, 32));
    EXPECT_EQ(pAnim->GetMatrixStream(1), nullptr);
    EXPECT_EQ(pAnim->GetControl(0).ref, (ControlRef{.type = 0, .m_index = -1, .channel = 4, .property = 2}));
    EXPECT_EQ(pAnim->GetCamera(0).pRotation->GetKey(0).value, glm::quat(0.9f, 0.1f, 0.2f, 0.3f));
    EXPECT_EQ(Write(*pAnim), Whole());
    const std::string unknown = ChunkBytes::Data("WHAT", "ever", 99) + ChunkBytes::Folder("BANM", "", 99);
    EXPECT_EQ(Read(Anim(unknown + Info() + unknown + Hip()))->GetBoneCount(), 1u);
    pAnim->SetBoneCount(3);
    EXPECT_THROW(Write(*pAnim), std::runtime_error) << "a bone without a name";
}

TEST_F(AnimChunk, EachFaultIsToldWithItsPlace) {
    const auto part = [](const char* pId, const char* pName, const PayloadBytes& payload) {
        return Anim(Info() + NamedData(pId, pName, payload.Get(), 1));
    };
    const auto control = [] { return PayloadBytes().U32(0).U32(0).U32(0); };
    const std::string key(52, '\0');
    const std::pair<std::string, const char*> faults[] = {
        {Anim(Hip()), "Missing Chunk Type!"},
        {Anim(Info(), 2), "Unsupported (newer) Chunk Version!"},
        {Anim(Info(), 1, 2), "Unsupported (newer) Chunk Version!"},
        {Anim(Info(0x80000000)), "animation 'walk': frame count -2147483648 isn't above 0"},
        {Anim(Info(3, std::nanf(""))), "animation 'walk': duration nan isn't above 0"},
        {part("BANM", "", PayloadBytes()), "animation 'walk', bone '': name is empty"},
        {part("BANM", "hip", PayloadBytes().U32(0xFFFFFFFF).Add(key)),
         "animation 'walk', bone 'hip': key count 4294967295 exceeds its chunk"},
        {part("BANM", "hip", PayloadBytes().U32(1).Add(key)),
         "animation 'walk', bone 'hip': animated mark goes beyond its chunk"},
        {part("CONS", "Glass", PayloadBytes().U32(0).U32(0)),
         "animation 'walk', control 'Glass': channel goes beyond its chunk"},
        {part("CONS", "Glass", control().U32(2).F32({0.5f, 0, 0.25f, 0})),
         "animation 'walk', control 'Glass': key 1 is earlier than the one before it"},
        {part("CONS", "Glass", control().U32(65536).Add(std::string(65536 * 8, '\0'))),
         "animation 'walk', control 'Glass': key count 65536 exceeds 65535"},
        {part("CONS", "Glass", control().U32(65535).Add(std::string(65535 * 8, '\0'))), ""},
        {part("CMRA", "Front", PayloadBytes().U32(0).U32(1).F32({0, 0, 0, 1})),
         "animation 'walk', camera 'Front': rotation key count 1 exceeds its chunk"},
    };
    for (const auto& [anim, pFault] : faults)
        EXPECT_EQ(Fault(anim), pFault);
}

TEST_F(AnimChunk, EveryTruncationIsRefused) { ExpectEveryTruncationRefused(Whole(), Read); }

// A file of a model: the animations stand behind all else, and alone when nothing else is asked for.
TEST_F(AnimChunk, StandsInAModelsFile) {
    auto pModel = std::make_unique<RenderModel>();
    pModel->SetMeshGroup(std::make_unique<ra::MeshGroup>());
    pModel->SetSkeleton(MakeChain({"hip", "knee"}));
    for (int i = 0; i < 2; ++i)
        ra::AddAnimNode(*pModel, ra::MakeLocalNode(*pModel, Read(Whole())), 1);
    const auto write = [&](const ra::IntermediateParts& parts) {
        return WriteFile([&](ByteStream& stream) { ra::WriteIntermediate(stream, *pModel, parts); });
    };
    pModel->SetName("walk");
    const auto file = [](const std::string& children) {
        return ChunkBytes::FileHeader() + NamedFolder("QPVX", "walk", children, 1);
    };
    EXPECT_EQ(write({.meshes = false}), file(Whole() + Whole()));
    EXPECT_EQ(write({.meshes = false, .animKeys = false}), file(""));
    const std::string all = write({});
    EXPECT_TRUE(all.ends_with(Whole() + Whole()));
    const std::string bare = write({.animKeys = false});
    EXPECT_EQ(bare.size(), all.size() - 2 * Whole().size());
    Forget(std::move(pModel));
    pModel = ra::ReadIntermediate(*MakeReadStream(all));
    ASSERT_NE(pModel, nullptr);
    ASSERT_EQ(pModel->GetAnimList()->GetCount(), 2u);
    EXPECT_THAT(pModel->GetAnimList()->GetNode(1)->m_BoneMappings, testing::ElementsAre(0, 1));
    EXPECT_EQ(write({.animKeys = false}), bare);
    // Its keys are no longer in the world.
    EXPECT_THROW(write({}), std::runtime_error);
}

} // namespace
