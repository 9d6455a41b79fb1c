#include "Shared/Cross/RenderAnim/Final/FinalFile.h"

#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"
#include "Tests/Shared/Cross/RenderAnim/DataTrees.h"
#include "Tests/Shared/Cross/RenderAnim/Final/FinalModel.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

class FinalFile : public FinalModelFixture {
protected:
    void ExpectFault(const std::string& children, const std::string& fault) {
        EXPECT_EQ(FaultOf([&] { Read(MakeFile(children)); }), fault);
        Forget();
    }
    static std::string MakeAnimChunk(const std::string& payload, uint32_t version = 2) {
        return NamedFolder("ANIM", "walk", NamedData("DATA", "walk", payload, version), 3);
    }
    static PayloadBytes MakeAnimStart() { return PayloadBytes().U32(3).F32({0.5f}); }
};

TEST_F(FinalFile, WhatIsReadAndSavedAgainHasTheSameBytes) {
    std::unique_ptr<RenderModel> pModel = MakeModel();
    const std::string bytes = Write(*pModel);
    Forget(std::move(pModel));
    MakeShader("art/shared"); // as its own file would bring it
    ReportCapture::Clear();
    pModel = Read(bytes);
    ASSERT_NE(pModel, nullptr);
    ExpectWalker(*pModel);
    EXPECT_EQ(pModel->GetMeshGroup()->GetMesh(1)->GetVertexSet(ra::Mesh::Poly_Low), nullptr);
    EXPECT_EQ(pModel->GetMeshGroup()->GetShader(0)->GetChannelTexture(0)->GetLevelCount(), 2u);
    EXPECT_THAT(pModel->GetAnimList()->GetNode(1)->m_ControlMappings, ElementsAre(0, 0));
    EXPECT_THAT(m_Reports.GetErrors(), ElementsAre());
    EXPECT_THAT(m_Reports.GetWarnings(), ElementsAre());
    EXPECT_EQ(Write(*pModel), bytes);
}

TEST_F(FinalFile, PartsLieAsTheirTablesSay) {
    const std::unique_ptr<RenderModel> pModel = MakeModel();
    pModel->GetAnimList()->GetNode(1)->SetXRefModel(ra::Name("art/other"));
    const std::string bytes = Write(*pModel);
    const auto bone = [](const char* pName, uint32_t parent) {
        return PayloadBytes().Text(pName).U32(parent).F32({0, 1, 0, 0, 0, 0, 1}).Get();
    };
    const std::string transform = PayloadBytes().F32({1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}).Get();
    EXPECT_THAT(bytes, HasSubstr(ChunkBytes::Data(
                           "SKEL", PayloadBytes().U32(2).Add(bone("hip", 0xFFFFFFFF) + bone("knee", 0)).Get(), 5)));
    PayloadBytes markers;
    markers.U32(2).Text("Muzzle").Text("knee").Add(transform).Text("Lost").Text("tail").Add(transform);
    PayloadBytes cameras;
    cameras.U32(1).Text("Front").F32({1, 2, 3, 0, 0, 0, 1, 1, 0, 0, 4, 5, 6});
    EXPECT_THAT(bytes, HasSubstr(ChunkBytes::Data("MARK", markers.Get()) + ChunkBytes::Data("CAMS", cameras.Get())));
    PayloadBytes anim = MakeAnimStart().U32(2).Text("hip").U32(0).U32(0).U8(0);
    anim.Text("knee").U32(2).F32({0, 1, 2, 3, 1, 4, 5, 6}).U32(2).F32({0, 0, 0, 0, 1, 1, 1, 0, 0, 0}).U8(1);
    anim.U32(2).Text("Body").U32(2).U32(0).U32(0).U32(2).F32({0, 0, 1, 1});
    anim.Text("Clay").U32(0).U32(2).U32(4).U32(2).F32({0, 0.25f, 1, 0.5f});
    anim.U32(1).Text("Front").U32(2).F32({0, 7, 8, 9, 1, 0, 0, 0}).U32(0);
    EXPECT_TRUE(bytes.ends_with(MakeAnimChunk(anim.Get()))) << "the other model's animation is left out";
    PayloadBytes low;
    low.U32(4).U32(0x21).Add(std::string(4 * 20, '\0')).U32(2).Text("Clay").U32(12).U16({0, 1, 2, 0, 2, 3, 0, 3});
    EXPECT_THAT(bytes, HasSubstr(low.Get()));
    PayloadBytes end;
    end.U32(0).Add(std::string(12, '\0'));
    EXPECT_THAT(bytes, HasSubstr(end.Get() + ChunkBytes::Header("DATA", "BVOL", 2, 61)));
}

TEST_F(FinalFile, UnknownChunksAndShadowsAreSteppedOver) {
    const std::string unknown = ChunkBytes::Data("WHAT", "ever", 99) + ChunkBytes::Folder("MESH", "", 99);
    PayloadBytes mesh;
    mesh.U32(0).U8(1).U32(1).U32(0).U32(0).U32(3).U32(1).Add(std::string(36, '\0')).U32(0).U32(0);
    mesh.U32(1).Add(std::string(12, 's')).U32(1).Add(std::string(24, 's')).U32(1).Add(std::string(40, 's'));
    PayloadBytes table;
    table.U32(1).Text("Tile").Text("").U32(0xFFFFFFFF);
    const std::string tile = NamedFolder("MSLC", "Tile", ChunkBytes::Data("DATA", mesh.Get(), 2), 1);
    const std::string group = ChunkBytes::Folder("MSGR", tile + ChunkBytes::Data("DATA", table.Get()));
    const std::unique_ptr<RenderModel> pModel = Read(MakeFile(unknown + group + unknown));
    ASSERT_NE(pModel, nullptr);
    EXPECT_EQ(pModel->GetMeshGroup()->GetMesh(0)->GetVertexSet(ra::Mesh::Poly_High)->GetSize(), 3);
}

TEST_F(FinalFile, AnAnimationNeedsASkeletonAheadOfIt) {
    const std::string anim = MakeAnimChunk(MakeAnimStart().U32(0).U32(0).Get(), 1); // which ends ahead of its cameras
    EXPECT_EQ(Read(MakeFile(MakeSkeleton() + MakeEmptyGroup() + anim))->GetAnimList()->GetCount(), 1u);
    EXPECT_EQ(Read(MakeFile(anim + MakeSkeleton() + MakeEmptyGroup())), nullptr);
    EXPECT_TRUE(ReportCapture::HasWarning("Walker: Animation 'walk' - in a model without a valid skeleton!"));
    EXPECT_THROW(Read(MakeFile(MakeSkeleton() + anim + MakeEmptyGroup())), Chunky::Exception);
    const std::unique_ptr<RenderModel> pModel = Read(MakeFile(MakeEmptyGroup()));
    EXPECT_EQ(Write(*pModel), MakeFile(MakeEmptyGroup(1))) << "what a model hasn't is not in its file";
    EXPECT_FALSE(ReadMotion(MakeMotionFile(NamedFolder("ANIM", "walk", "", 3)), *pModel));
}

TEST_F(FinalFile, OfAnotherModelsMeshTheNameIsKept) {
    std::unique_ptr<RenderModel> pModel = MakeModel();
    pModel->GetMeshGroup()->SetXRefName(1, ra::Name("art/other"));
    pModel->GetMeshGroup()->AddShader(MakeShader("Foreign"), false);
    const std::string bytes = Write(*pModel);
    EXPECT_THAT(bytes, Not(HasSubstr(std::string("Wheel\0DATA", 10))));
    EXPECT_THAT(bytes, Not(HasSubstr("Foreign"))) << "a shader of other models alone stays there";
    Forget(std::move(pModel));
    MakeShader("art/shared");
    pModel = Read(bytes);
    EXPECT_TRUE(ReportCapture::HasWarning("MODELS -- Unable to load XREF Mesh 'Wheel' from 'art/other'!"));
    EXPECT_EQ(Write(*pModel), bytes);
}

TEST_F(FinalFile, DamageIsTold) {
    const std::string start = MakeSkeleton() + MakeEmptyGroup();
    ExpectFault("", "Missing Chunk Type! (mesh group)");
    ExpectFault(MakeEmptyGroup() + MakeEmptyGroup(), "there is a second mesh group in the file");
    ExpectFault(MakeSkeleton() + MakeSkeleton(), "there is a second skeleton in the file");
    ExpectFault(ChunkBytes::Data("SKEL", PayloadBytes().U32(2).Text("hip").Get(), 5),
                "skeleton: bone count 2 exceeds its chunk");
    ExpectFault(ChunkBytes::Data("MARK", PayloadBytes().U32(9).Get()), "markers: marker count 9 exceeds its chunk");
    ExpectFault(ChunkBytes::Data("CAMS", PayloadBytes().U32(9).Get()), "cameras: camera count 9 exceeds its chunk");
    ExpectFault(start + MakeAnimChunk(PayloadBytes().U32(0).F32({1}).Get()),
                "animation 'walk': frame count 0 isn't above 0");
    PayloadBytes twoBones = MakeAnimStart().U32(2);
    for (const char* pName : {"hip", "knee"})
        twoBones.Text(pName).U32(0).U32(0).U8(1);
    ExpectFault(start + MakeAnimChunk(twoBones.U32(0).U32(0).Get()), "animation 'walk' has 2 bones, the skeleton 1");
    const std::string backward = MakeAnimStart().U32(1).Text("hip").U32(2).F32({1, 0, 0, 0, 0, 0, 0, 0}).Get();
    ExpectFault(start + MakeAnimChunk(backward), "animation 'walk': position key 1 is earlier than the one before it");
    const std::string many = MakeAnimStart().U32(0).U32(1).Text("Body").U32(2).U32(0).U32(0).U32(0x20000000).Get();
    ExpectFault(start + MakeAnimChunk(many), "animation 'walk': control key count 536870912 exceeds its chunk");
    ExpectFault(start + NamedFolder("ANIM", "walk", "", 3), "Missing Chunk Type! (data of animation 'walk')");
    ExpectFault(start + NamedFolder("ANIM", "walk", "", 4), "Unsupported (newer) Chunk Version!");
    EXPECT_THROW(Read(MakeFile(MakeEmptyGroup(), 4)), Chunky::Exception);
    EXPECT_THROW(Read(MakeFile(MakeEmptyGroup(), 1)), Chunky::Exception);
}

TEST_F(FinalFile, AMeshWithoutVerticesIsRefusedBothWays) {
    PayloadBytes mesh;
    mesh.U32(0).U8(1).U32(1).U32(0).U32(0).U32(0).U32(1).U32(0).U32(0);
    const std::string none = NamedFolder("MSLC", "None", ChunkBytes::Data("DATA", mesh.Get(), 2), 1);
    ExpectFault(ChunkBytes::Folder("MSGR", none), "mesh 'None': vertex count is 0");
    const MeshRef empty = MakeMesh("None", {}, 2);
    EXPECT_TRUE(empty->GetVertexSet(ra::Mesh::Poly_High)->Create(1, 0, 2));
    RenderModel model;
    model.SetMeshGroup(MakeGroup({empty}));
    EXPECT_THAT(FaultOf([&] { Write(model); }), HasSubstr("mesh.GetVertexSet( ra::Mesh::Poly_High )->GetSize() > 0"));
}

TEST_F(FinalFile, AnAnimationOfOtherBonesIsAMistakeOfTheWriter) {
    const std::unique_ptr<RenderModel> pModel = MakeModel();
    pModel->GetAnimList()->GetNode(1)->GetAnim()->SetBoneCount(0);
    EXPECT_NO_THROW(Write(*pModel));
    pModel->GetAnimList()->GetNode(1)->GetAnim()->SetBoneCount(1);
    EXPECT_THROW(Write(*pModel), std::runtime_error);
}

TEST_F(FinalFile, EveryTruncationIsRefused) {
    const std::string bytes = Write(*MakeModel());
    Forget();
    ExpectEveryTruncationRefused(bytes, Read);
}

TEST_F(FinalFile, TheMotionSideComesBack) {
    const std::unique_ptr<RenderModel> pModel = MakeMoved();
    SelectionInfo selection = pModel->GetSelectionInfo();
    selection.mode = 3;
    pModel->SetSelectionInfo(selection);
    const std::string bytes = WriteMotion(*pModel);
    const std::string xref = ChunkBytes::Data("XREF", PayloadBytes().Text("art/other").Text("run").Get(), 1);
    const std::string bounds = NamedData("ANBV", "run", PayloadBytes().F32({-1, -2, -3, 1, 2, 3}).Get(), 1);
    MotionSide side;
    side.AddSamples();
    EXPECT_TRUE(bytes.substr(24 + 20).starts_with(NamedFolder("ANIM", "run", xref + bounds, 3) +
                                                  side.Write(ra::MotionForm::Final)));

    const std::unique_ptr<RenderModel> pOther = MakeModel();
    pOther->SetAnimList(std::make_unique<AnimList>(*pOther));
    AddAnim(*pOther, "walk");
    EXPECT_TRUE(ReadMotion(bytes, *pOther));
    EXPECT_EQ(pOther->GetSelectionInfo().mode, 3);
    EXPECT_EQ(pOther->GetAnimList()->GetNode(1)->GetMinimum(), glm::vec3(-1, -2, -3));
    EXPECT_TRUE(ReportCapture::HasWarning("'Walker': XRef'ed Anim 'run' in model 'art/other' is missing!"));
    EXPECT_EQ(WriteMotion(*pOther), bytes);
    // Now that it is there, it isn't taken again.
    EXPECT_TRUE(ReadMotion(MakeMotionFile(NamedFolder("ANIM", "run", xref, 3)), *pOther));
    EXPECT_TRUE(
        ReportCapture::HasWarning("'Walker': XRef'ed Anim 'run' is already present locally, resave the motion tree!"));
    EXPECT_EQ(pOther->GetAnimList()->GetCount(), 2u);
    EXPECT_THROW(ReadMotion(MakeMotionFile("", 5), *pOther), Chunky::Exception);
}

// A tree of final files.
class FinalOnDisk : public FinalFile {
protected:
    FinalOnDisk() {
        s_SinkText.clear();
        ra::SetErrorSink([](const char* pText) { s_SinkText = pText; });
    }
    ~FinalOnDisk() override {
        ra::SetErrorSink(nullptr);
        RenderModelTypeInfo::SetFinalLoader(nullptr);
    }
    void Save(const char* pName) {
        const std::unique_ptr<RenderModel> pModel = MakeModel();
        ASSERT_TRUE(ra::SaveFinal(*pModel, (std::string(pName) + ".obm").c_str()));
    }

    DataTrees m_Trees;
    static inline std::string s_SinkText;
};

TEST_F(FinalOnDisk, LoadsByNameWithItsMotionFile) {
    Save("DATA:walker");
    Forget();
    MakeShader("art/shared");
    for (const char* pName : {"walker", "DATA:walker.max", "walker.pvx"}) {
        ReportCapture::Clear();
        const std::unique_ptr<RenderModel> pModel = ra::LoadFinal(pName);
        ASSERT_NE(pModel, nullptr) << pName;
        EXPECT_TRUE(ReportCapture::HasError(std::string("RENDER MODEL USAGE -- Loading model '") + pName + "'..."));
        EXPECT_EQ(pModel->GetSelectionInfo().mode, 1);
        EXPECT_EQ(pModel->GetAnimList()->GetShaderMarkCount(), pModel->GetMeshGroup()->GetShaderCount());
    }
    std::unique_ptr<RenderModel> pModel = MakeModel();
    SelectionInfo selection = pModel->GetSelectionInfo();
    selection.mode = 7;
    pModel->SetSelectionInfo(selection);
    ASSERT_TRUE(ra::SaveFinalMotion(*pModel, "DATA:walker.obe"));
    pModel = ra::LoadFinal("walker");
    EXPECT_EQ(pModel->GetSelectionInfo().mode, 7);
}

TEST_F(FinalOnDisk, FaultsAreToldAndGiveNoModel) {
    EXPECT_EQ(ra::LoadFinal("missing"), nullptr);
    EXPECT_EQ(s_SinkText, "RENDER ANIM -- DATA:missing.obm: Unable to open file!");
    EXPECT_TRUE(ReportCapture::HasWarning(s_SinkText));
    Save("DATA:walker");
    Forget();
    MakeShader("art/shared");
    m_Trees.Write("DATA/walker.obe", MakeMotionFile(ChunkBytes::Data("SEUI", "", 3)));
    EXPECT_EQ(ra::LoadFinal("walker"), nullptr) << "a motion file that is there has to be sound";
    EXPECT_THAT(s_SinkText, HasSubstr("RENDER ANIM -- DATA:walker.obe: "));
    m_Trees.Write("DATA/walker.obm", MakeFile(NamedFolder("ANIM", "walk", "", 3)));
    s_SinkText.clear();
    EXPECT_EQ(ra::LoadFinal("walker"), nullptr);
    EXPECT_EQ(s_SinkText, "");
}

TEST_F(FinalOnDisk, ModelsOfOthersAreLoadedByName) {
    ra::InstallFinalModelLoader();
    Save("DATA:walker");
    std::unique_ptr<RenderModel> pModel = MakeModel();
    pModel->SetName("Runner");
    pModel->GetMeshGroup()->SetXRefName(1, ra::Name("walker"));
    pModel->GetAnimList()->GetNode(1)->SetXRefModel(ra::Name("walker"));
    ASSERT_TRUE(ra::SaveFinal(*pModel, "DATA:runner.obm"));
    ASSERT_TRUE(ra::SaveFinalMotion(*pModel, "DATA:runner.obe"));
    Forget(std::move(pModel));
    MakeShader("art/shared");
    ReportCapture::Clear();
    pModel = ra::LoadFinal("runner");
    ASSERT_NE(pModel, nullptr);
    RenderModelRef walker;
    ASSERT_TRUE(walker.Find("walker"));
    EXPECT_EQ(pModel->GetMeshGroup()->GetMesh(1), walker->GetMeshGroup()->GetMesh(1));
    EXPECT_EQ(pModel->GetAnimList()->GetNode(1)->GetAnim(), walker->GetAnimList()->GetNode(1)->GetAnim());
    EXPECT_THAT(pModel->GetAnimList()->GetNode(1)->m_BoneMappings, ElementsAre(0, 1));
    EXPECT_FALSE(ReportCapture::HasWarning("XREF"));
    EXPECT_FALSE(ReportCapture::HasWarning("XRef"));
    walker.Reset();
    pModel.reset();
}

} // namespace
