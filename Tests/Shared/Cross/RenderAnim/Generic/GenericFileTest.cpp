#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"

#include "Shared/Cross/RenderAnim/Generic/MotionFile.h"
#include "Tests/Shared/Cross/RenderAnim/Generic/GenericOnDisk.h"

using testing::HasSubstr;

namespace {

using GenericFile = GenericFixture;

TEST_F(GenericFile, WhatIsReadAndSavedAgainHasTheSameBytes) {
    std::unique_ptr<RenderModel> pModel = MakeModel();
    const std::string bytes = Write(*pModel);
    Forget(std::move(pModel));
    pModel = Read(bytes);
    ASSERT_NE(pModel, nullptr);
    ExpectWalker(*pModel);
    const AnimList& list = *pModel->GetAnimList();
    EXPECT_EQ(list.FindNode("stop.1"), 1);
    EXPECT_TRUE(list.GetNode(0)->HasBounds());
    EXPECT_FALSE(list.GetNode(1)->HasBounds());
    EXPECT_EQ(dynamic_cast<const AnimListGeneric&>(list).GetFileVersion(), 2u);
    EXPECT_TRUE(list.IsShaderAnimated(0));
    EXPECT_EQ(list.GetShaderMarkCount(), 2u);
    EXPECT_EQ(Write(*pModel), bytes);
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
    Forget(std::move(pModel));
}

TEST_F(GenericFile, ModelsNeedNoBones) {
    const auto pModel = Read(File(MakeEmptyGroup() + ChunkBytes::Data("WHAT", "ever", 99)));
    ASSERT_NE(pModel, nullptr);
    EXPECT_EQ(Write(*pModel), File(MakeEmptyGroup()));
    EXPECT_EQ(Read(File(MakeEmptyGroup() + Anim("run", Info()))), nullptr);
    EXPECT_TRUE(ReportCapture::HasWarning("Walker: Animation 'run' - in a model without a valid skeleton!"));
}

TEST_F(GenericFile, TheOrderOfTheFileBinds) {
    EXPECT_EQ(Read(File(Anim("run", Info()) + TwoBones() + MakeEmptyGroup())), nullptr);
    EXPECT_EQ(FaultOf([] { Read(File(TwoBones() + Anim("run", Info()) + MakeEmptyGroup())); }),
              "Missing Chunk Type! (mesh group ahead of the animations)");
    EXPECT_THROW(Read(File("")), Chunky::Exception);
    EXPECT_THROW(Read(File(MakeEmptyGroup(), 2)), Chunky::Exception);
    EXPECT_THAT(FaultOf([] { Read(File(ChunkBytes::Data("SKEL", "", 2) + MakeEmptyGroup())); }),
                HasSubstr("Missing Chunk Type! (the skeleton is of another level"));
    EXPECT_THAT(FaultOf([] { Read(File(ChunkBytes::Folder("MESH", ChunkBytes::Folder("GGRP", "")))); }),
                HasSubstr("\"MESH\" is a mesh section of before there were mesh groups"));
}

TEST_F(GenericFile, EveryTruncationIsRefused) {
    const std::string bytes = Write(*MakeModel());
    Forget();
    ExpectEveryTruncationRefused(bytes, Read);
    EXPECT_EQ(Inv::GetCount(ra::Mesh::GetTypeInfo()), 0u);
    EXPECT_EQ(Inv::GetCount(::Anim::GetTypeInfo()), 0u);
}

TEST_F(GenericOnDisk, ModelsAreFoundByName) {
    Save("GENERIC:art\\tank.pvx");
    Save("DATA:art\\tank.pvx");
    Save("DATA:art\\jeep.v2.pvx");
    EXPECT_EQ(Load("art/tank"), "GENERIC:art\\tank.pvx");
    EXPECT_EQ(Load("art\\tank.pvx"), "GENERIC:art\\tank.pvx");
    EXPECT_EQ(Load("data:art/tank.max"), "DATA:art\\tank.pvx");
    EXPECT_EQ(Load("GENERIC:art/tank"), "GENERIC:art\\tank.pvx");
    EXPECT_EQ(Load("art/jeep.v2"), "DATA:art\\jeep.v2.pvx");
    EXPECT_EQ(Load("GENERIC:art/jeep.v2.pvx"), "DATA:art\\jeep.v2.pvx");
    EXPECT_EQ(Load("art/plane"), "Unable to open file!");
    Save("GENERIC:art\\plane.max");
    EXPECT_EQ(Load("art/plane.max"), "GENERIC:art\\plane.max") << "as it stands";
}

TEST_F(GenericOnDisk, TheMotionFileStandsBesideTheModel) {
    Save("GENERIC:art\\tank.pvx");
    std::unique_ptr<RenderModel> pModel = MakeModel();
    pModel->SetSelectionInfo({.mode = 3, .extentX = 1.5f, .centreZ = 4, .box = {.centre = {7, 8, 9}}});
    pModel->GetMotionParts().events.Add(std::make_unique<ra::Event>()).m_parameters = {{"sound", "bang"}};
    ASSERT_TRUE(ra::SaveMotionFile(*pModel, "GENERIC:art\\tank.ebp"));
    Forget(std::move(pModel));
    for (const bool withMotionFile : {true, false}) {
        pModel = ra::LoadGeneric("art/tank", withMotionFile);
        ASSERT_NE(pModel, nullptr);
        const SelectionInfo& info = pModel->GetSelectionInfo();
        EXPECT_EQ(info.mode, withMotionFile ? 3 : 1);
        EXPECT_EQ(info.extentX, withMotionFile ? 1.5f : 1);
        EXPECT_EQ(info.centreZ, withMotionFile ? 4 : 1);
        EXPECT_EQ(pModel->GetMotionParts().events.GetCount(), withMotionFile ? 1u : 0u);
        Forget(std::move(pModel));
    }
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
    // One that can't be read makes the whole model of no use.
    m_Trees.Write("GENERIC/art/tank.ebp", ChunkBytes::FileHeader() + ChunkBytes::Folder("QEBP", "", 5));
    EXPECT_EQ(Load("art/tank", true), "Unsupported (newer) Chunk Version!");
    EXPECT_EQ(Load("GENERIC:art/tank", true), "Unsupported (newer) Chunk Version!");
    EXPECT_EQ(Load("art/tank", false), "GENERIC:art\\tank.pvx");
    // It has no second place.
    Save("DATA:art\\jeep.pvx");
    m_Trees.Write("DATA/art/jeep.ebp", "damaged");
    EXPECT_EQ(Load("art/jeep", true), "DATA:art\\jeep.pvx");
}

TEST_F(GenericOnDisk, TheMotionFileOfAModelWithoutBonesHasNoAnimations) {
    m_Trees.Write("DATA/art/rock.pvx", File(MakeEmptyGroup()));
    m_Trees.Write("GENERIC/art/rock.ebp",
                  ChunkBytes::FileHeader() + ChunkBytes::Folder("QEBP", XRef("roll", "art/tank", "run"), 4));
    EXPECT_EQ(Load("art/rock", true), "none");
    EXPECT_TRUE(ReportCapture::HasWarning("Walker: Animation 'roll' - in a model without a valid skeleton!"));
}

} // namespace
