// What generic models take from others.
#include "Shared/Cross/RenderAnim/Generic/MotionFile.h"
#include "Tests/Shared/Cross/RenderAnim/Generic/GenericOnDisk.h"
#include "Tests/Shared/PC/Debug/SelfRun.h"

using testing::HasSubstr;
using testing::Not;

namespace {

class XRefs : public GenericOnDisk {
protected:
    // A table alone, with one mesh of another model.
    static std::string XRefGroup(const char* pMesh, const char* pModel) {
        return ChunkBytes::Folder(
            "MSGR", ChunkBytes::Data("DATA", PayloadBytes().U32(1).Text(pMesh).Text(pModel).U32(0xFFFFFFFF).Get()) +
                        ChunkBytes::Data("BVOL", std::string(1, '\0'), 2));
    }
};

TEST_F(XRefs, AMeshIsSharedWithItsModel) {
    Save("GENERIC:art\\tank.pvx");
    Inv::PushFrame("inner");
    const auto pModel = Read(File(XRefGroup("Wheel", "art/tank")));
    EXPECT_STREQ(Inv::GetCurrentFrameName(), "inner");
    Inv::PopFrame();
    RenderModelRef tank; // from the root, whatever the frame
    ASSERT_TRUE(tank.Find("art/tank"));
    EXPECT_EQ(pModel->GetMeshGroup()->GetMesh(0), tank->GetMeshGroup()->GetMesh(1));
    // The shaders are drawn with, but they are the other's.
    ASSERT_EQ(pModel->GetMeshGroup()->GetShaderCount(), 1u);
    EXPECT_FALSE(pModel->GetMeshGroup()->IsShaderOwned(0));
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
    ra::SetGenericLoad(false);
    EXPECT_FALSE(ra::XRefLoad("art/jeep").IsValid()) << "no final loader";
    EXPECT_THROW(ra::XRefLoad(nullptr), std::runtime_error);
}

TEST_F(XRefs, TheMissingModelStandsInForAMesh) {
    Save("GENERIC:art\\tank.pvx");
    Save("DATA:art\\ebps\\missingmodel.pvx");
    ReportCapture::Clear();
    const auto pNoMesh = Read(File(XRefGroup("Wing", "art/tank")));
    EXPECT_TRUE(ReportCapture::HasWarning("MODELS -- 'Walker': Unable to load XREF Mesh 'Wing' from 'art/tank'!"));
    EXPECT_STREQ(pNoMesh->GetMeshGroup()->GetMesh(0)->GetName(), "Body");
    const auto pNoModel = Read(File(XRefGroup("Wing", "art/plane")));
    EXPECT_TRUE(ReportCapture::HasWarning("RENDER ANIM -- art/plane: Unable to open file!"));
    EXPECT_TRUE(ReportCapture::HasWarning("Unable to load 'Render Model' resource 'art/plane', using default!"));
    EXPECT_TRUE(ReportCapture::HasWarning("MODELS -- 'Walker': Unable to load XREF Mesh 'Wing' from 'art/plane'!"));
    EXPECT_EQ(pNoModel->GetMeshGroup()->GetMesh(0), pNoMesh->GetMeshGroup()->GetMesh(0));
}

TEST_F(XRefs, ModelsThatTakeFromOneAnotherEnd) {
    m_Trees.Write("GENERIC/art/a.pvx", File(XRefGroup("Wheel", "art/b")));
    m_Trees.Write("GENERIC/art/b.pvx", File(XRefGroup("Wheel", "art/a")));
    m_Trees.Write("DATA/art/ebps/missingmodel.pvx", File(XRefGroup("Wheel", "art/none")));
    RenderModelRef model;
    EXPECT_TRUE(model.Get("art/a"));
    EXPECT_FALSE(model->GetMeshGroup()->GetMesh(0).IsValid());
    EXPECT_TRUE(ReportCapture::HasWarning("Render Model resource 'art/a' refers to itself!"));
}

TEST_F(XRefs, AnAnimationIsSharedWithItsModel) {
    Save("GENERIC:art\\tank.pvx");
    const std::string bones = Bones(Bone("knee", 0xFFFFFFFF) + Bone("tail", 0), 2);
    const auto read = [&](const std::string& anims) { return Read(File(bones + MakeEmptyGroup() + anims)); };
    auto pModel = read(XRef("run", "art/tank", "run") + XRef("stop", "art/tank", "stop") +
                       XRef("fly", "art/jet", "fly") + XRef("swim", "C:\\art.old\\ship", "swim", 1));
    const AnimList& list = *pModel->GetAnimList();
    ASSERT_EQ(list.GetCount(), 4u);
    RenderModelRef tank;
    ASSERT_TRUE(tank.Find("art/tank"));
    EXPECT_EQ(list.GetNode(0)->GetAnim(), tank->GetAnimList()->GetNode(0)->GetAnim());
    EXPECT_EQ(list.GetNode(0)->GetXRefModel(), ra::Name("art/tank"));
    EXPECT_THAT(list.GetNode(0)->m_BoneMappings, testing::ElementsAre(1, -1));
    EXPECT_TRUE(ReportCapture::HasWarning("'Walker': XRef'ed Anim 'stop' in model 'art/tank' is missing!"));
    EXPECT_TRUE(ReportCapture::HasWarning("'Walker': XRef'ed Anim 'fly' in model 'art/jet' is missing!"));
    EXPECT_TRUE(ReportCapture::HasWarning("'Walker': XRef'ed Anim 'swim' in model '\\art.old\\ship' is missing!"))
        << "a dot in a folder's name begins no extension";
    EXPECT_EQ(list.FindNode("stop"), 1);
    EXPECT_EQ(list.GetNode(1)->GetAnim()->GetBoneCount(), 0u);
    Forget(std::move(pModel));

    ReportCapture::Clear();
    pModel = read(Anim("run", Info()) + XRef("run", "art/tank", "run"));
    EXPECT_EQ(pModel->GetAnimList()->GetCount(), 1u);
    EXPECT_TRUE(
        ReportCapture::HasWarning("'Walker': XRef'ed Anim 'run' is already present locally, resave the motion tree!"));
    Forget(std::move(pModel));

    ReportCapture::Clear();
    for (const uint32_t version : {1u, 2u}) {
        pModel = read(XRef("run", version == 1 ? "C:art\\tank.max" : "art\\tank", "run", version));
        EXPECT_EQ(pModel->GetAnimList()->GetNode(0)->GetXRefModel(), ra::Name("art\\tank"));
        EXPECT_EQ(pModel->GetAnimList()->GetNode(0)->GetAnim()->GetBoneCount(), 2u);
        Forget(std::move(pModel));
    }
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
}

TEST_F(XRefs, ModelsMayTakeAnimationsFromOneAnother) {
    for (const auto& [name, own, other] : {std::array{"a", "walk", "b"}, {"b", "run", "a"}}) {
        m_Trees.Write(std::string("GENERIC/art/") + name + ".pvx",
                      File(TwoBones() + MakeEmptyGroup() + Anim(own, Info())));
        const std::string taken = own == std::string("walk") ? "run" : "walk";
        m_Trees.Write(std::string("GENERIC/art/") + name + ".ebp",
                      ChunkBytes::FileHeader() +
                          ChunkBytes::Folder(
                              "QEBP", XRef(taken.c_str(), (std::string("art/") + other).c_str(), taken.c_str()), 4));
    }
    const auto pModel = ra::LoadGeneric("GENERIC:art/a.pvx", true);
    ASSERT_NE(pModel, nullptr);
    RenderModelRef other;
    ASSERT_TRUE(other.Find("art/b"));
    for (const RenderModel* pEach : {std::as_const(pModel).get(), std::as_const(other).GetData()}) {
        ASSERT_EQ(pEach->GetAnimList()->GetCount(), 2u);
        EXPECT_EQ(pEach->GetAnimList()->GetNode(1)->GetAnim()->GetBoneCount(), 2u);
    }
    EXPECT_EQ(pModel->GetAnimList()->GetNode(0)->GetAnim(), other->GetAnimList()->GetNode(1)->GetAnim());
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
}

TEST_F(XRefs, TheMotionFileHoldsTheAnimationsOfOthers) {
    Save("GENERIC:art\\tank.pvx");
    m_Trees.Write("GENERIC/art/a.pvx", File(TwoBones() + MakeEmptyGroup() + Anim("stop", Info())));
    const std::string selection = PayloadBytes().U32(1).F32({0, 0, 0, 0}).Add(std::string(60, '\0')).Get();
    m_Trees.Write("GENERIC/art/a.ebp",
                  ChunkBytes::FileHeader() +
                      ChunkBytes::Folder("QEBP",
                                         XRef("run", "art/tank", "run") + ChunkBytes::Data("WHAT", "ever") +
                                             ChunkBytes::Data("SEUI", selection, 3),
                                         4));
    const auto pModel = ra::LoadGeneric("art/a", true);
    ASSERT_NE(pModel, nullptr);
    const std::string bytes = WriteFile([&](ByteStream& stream) { ra::WriteMotionFile(stream, *pModel); });
    EXPECT_THAT(bytes, HasSubstr(XRef("run", "art/tank", "run")));
    EXPECT_THAT(bytes, Not(HasSubstr("stop")));
    EXPECT_TRUE(bytes.ends_with(ChunkBytes::Data("SEUI", selection, 3)));
    EXPECT_THAT(Write(*pModel), Not(HasSubstr("run")));
}

// Carried out in a process that was started with the word "nomodels".
using NoModelsRun = GenericOnDisk;

TEST_F(NoModelsRun, DISABLED_EveryModelIsTheMissingOne) {
    Save("GENERIC:art\\tank.pvx");
    RenderModelRef model;
    ASSERT_TRUE(model.Get("art/tank"));
    EXPECT_STREQ(model->GetMeshGroup()->GetMesh(0)->GetName(), "Body");
    model.Reset();
    Forget();
    m_Trees.Write("DATA/art/ebps/missingmodel.pvx", File(MakeEmptyGroup()));
    ASSERT_TRUE(model.Get("art/tank"));
    EXPECT_EQ(model->GetMeshGroup()->GetMeshCount(), 0u);
}

TEST(NoModels, EveryModelIsTheMissingOne) {
    const SelfRunResult result = RunSelf("NoModelsRun.DISABLED_EveryModelIsTheMissingOne", "-nomodels");
    EXPECT_EQ(result.status, 0) << result.output;
}

} // namespace
