#include <filesystem>
#include <iterator>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Tests/Shared/Cross/RenderAnim/ModelFixture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

using testing::HasSubstr;
using testing::Not;

namespace {

class IntermediateFile : public ModelFixture {
protected:
    // A model with one of everything, two meshes of one name among it.
    static std::unique_ptr<RenderModel> MakeModel() {
        const ShaderRef clay = MakeShader("Clay");
        const ShaderRef glass = MakeShader("Glass.001");
        glass->SetBlendMode(6, 7);
        glass->SetTwoSided(true);
        return MakeWalker({MakeSkin({clay, glass}), MakeMesh("Wheel", {clay}, 3), MakeMesh("Wheel", {clay}, 5)});
    }
    static std::string Write(const RenderModel& model, const ra::IntermediateParts& parts = {}) {
        return WriteFile([&](ByteStream& stream) { ra::WriteIntermediate(stream, model, parts); });
    }
    static std::unique_ptr<RenderModel> Read(const std::string& bytes) {
        return ra::ReadIntermediate(*MakeReadStream(bytes));
    }
    static std::string MakeFile(const std::string& children) {
        return ChunkBytes::FileHeader() + NamedFolder("QPVX", "Walker", children, 1);
    }
};

TEST_F(IntermediateFile, WhatIsReadAndSavedAgainHasTheSameBytes) {
    std::unique_ptr<RenderModel> pModel = MakeModel();
    const std::string bytes = Write(*pModel);
    EXPECT_EQ(Write(*pModel), bytes);
    Forget(std::move(pModel));
    pModel = Read(bytes);
    ASSERT_NE(pModel, nullptr);
    ExpectWalker(*pModel);
    EXPECT_EQ(pModel->GetMeshGroup()->GetMesh(2)->GetVertexSet(ra::Mesh::Poly_High)->GetSize(), 5);
    EXPECT_EQ(Write(*pModel), bytes);
    EXPECT_TRUE(m_Reports.GetErrors().empty());
}

TEST_F(IntermediateFile, SwitchesLeavePartsOut) {
    const std::unique_ptr<RenderModel> pModel = MakeModel();
    pModel->SetSkeleton(nullptr);
    const std::string bare = Write(*pModel, {.shaders = false});
    EXPECT_THAT(bare, Not(HasSubstr("FOLDSHDR")));
    EXPECT_THAT(bare, Not(HasSubstr("DATASKEL")));
    EXPECT_THAT(bare, HasSubstr("FOLDMSGR"));
}

TEST_F(IntermediateFile, SkeletonsAndMeshTablesAreChecked) {
    const auto fault = [](const std::string& children) { return FaultOf([&] { Read(MakeFile(children)); }); };
    const auto skeleton = [](uint32_t count, uint32_t parent) {
        PayloadBytes payload;
        payload.U32(count).Text("hip").U32(parent).F32({1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0});
        return ChunkBytes::Data("SKEL", payload.Get(), 2) + MakeEmptyGroup();
    };
    EXPECT_EQ(fault(skeleton(1, 0xFFFFFFFF)), "");
    EXPECT_EQ(fault(skeleton(0, 0)), "");
    EXPECT_THAT(fault(ChunkBytes::Folder("SKEL", "", 3) + MakeEmptyGroup()), HasSubstr("of another level"));
    for (const uint32_t parent : {0u, 1u, 0x7FFFFFFFu, 0xFFFFFFFEu})
        EXPECT_THAT(fault(skeleton(1, parent)), HasSubstr("is no other bone")) << parent;
    for (const uint32_t count : {2u, 0xFFFFFFFFu})
        EXPECT_THAT(fault(skeleton(count, 0xFFFFFFFF)), HasSubstr("exceeds its chunk")) << count;
    const auto group = [](uint32_t count) {
        const std::string table = PayloadBytes().U32(count).Text("Tile").Text("").U32(0xFFFFFFFF).Get();
        return ChunkBytes::Folder("MSGR", ChunkBytes::Data("DATA", table));
    };
    EXPECT_EQ(fault(group(1)), "mesh group: there is no mesh 'Tile' in the file");
    EXPECT_EQ(fault(group(0x20000000)), "mesh group: mesh count 536870912 exceeds its chunk");
    EXPECT_EQ(fault(ChunkBytes::Folder("MSGR", "")), "Missing Chunk Type! (table of the mesh group)");
}

class IntermediateOnDisk : public IntermediateFile {
protected:
    IntermediateOnDisk() { FilePath::AddSource("TOOL", "HD", 99, std::make_shared<FilePathHDRaw>(false)); }
    ~IntermediateOnDisk() override { FilePath::RemoveSource("TOOL", "HD"); }
    std::string At(const std::string& name) const { return "TOOL:" + m_Folder.Path(name); }
    auto CountFiles() const { return std::distance(std::filesystem::directory_iterator(m_Folder.Native()), {}); }

    TempFolder m_Folder;
};

TEST_F(IntermediateOnDisk, LoadsByNameWithOrWithoutItsExtension) {
    EXPECT_TRUE(ra::SaveIntermediate(At("walker.pvx").c_str(), *MakeModel(), true, true, true));
    Forget();
    EXPECT_NE(ra::LoadIntermediate(At("walker.pvx").c_str()), nullptr);
    EXPECT_NE(ra::LoadIntermediate(At("walker.max").c_str()), nullptr);
    EXPECT_THROW(ra::LoadIntermediate(At("other.pvx").c_str()), Chunky::Exception);
    FilePath::AddSource("DATA", "HD", 1, std::make_shared<FilePathHDRaw>(false));
    EXPECT_NE(ra::LoadIntermediate(m_Folder.Path("walker").c_str()), nullptr);
    FilePath::RemoveSource("DATA", "HD");
}

TEST_F(IntermediateOnDisk, ASaveThatFailsLeavesWhatWasThere) {
    const auto save = [](const std::string& path, const RenderModel& model) {
        return ra::SaveIntermediate(path.c_str(), model, true, true, true);
    };
    const std::string nowhere = At("no such folder\\x.pvx");
    EXPECT_FALSE(save(nowhere, *MakeModel()));
    EXPECT_TRUE(ReportCapture::HasWarning("RENDER ANIM -- " + nowhere + ": Unable to open file!"));
    // A model without its group, which the writer holds for a mistake.
    const std::string path = At("x.pvx");
    EXPECT_FALSE(save(path, RenderModel()));
    EXPECT_TRUE(ReportCapture::HasWarning("RENDER ANIM -- " + path));
    EXPECT_EQ(CountFiles(), 0);
    m_Folder.Write("x.pvx", "before");
    EXPECT_FALSE(save(path, RenderModel()));
    EXPECT_EQ(m_Folder.Read("x.pvx"), "before");
    EXPECT_TRUE(save(path, *MakeModel()));
    EXPECT_EQ(m_Folder.Read("x.pvx"), Write(*MakeModel()));
    EXPECT_EQ(CountFiles(), 1);
}

TEST_F(IntermediateOnDisk, AFullDiskIsReported) {
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "no device that is always full";
    std::filesystem::create_symlink("/dev/full", m_Folder.Native("full.pvx"));
    const std::string path = At("full.pvx");
    EXPECT_FALSE(ra::SaveIntermediate(path.c_str(), *MakeModel(), true, true, true));
    EXPECT_TRUE(ReportCapture::HasWarning("RENDER ANIM -- " + path + ": Unable to write to file!"));
}

TEST_F(IntermediateOnDisk, TheFirstAnimationOfAFileIsAppended) {
    const std::string anim = NamedFolder(
        "ANIM", "run", NamedFolder("DATA", "run", ChunkBytes::Data("INFO", PayloadBytes().U32(2).F32({0.5f}).Get()), 1),
        1);
    m_Folder.Write("run.pvx",
                   MakeFile(ChunkBytes::Data("WHAT", "ever") + anim + NamedFolder("ANIM", "damaged", "", 1)));
    m_Folder.Write("none.pvx", MakeFile(ChunkBytes::Data("ANIM", "no folder")));
    m_Folder.Write("new.pvx", ChunkBytes::FileHeader() + NamedFolder("QPVX", "Walker", anim, 2));
    const std::unique_ptr<RenderModel> pModel = MakeModel();
    ra::AppendIntermediateAnims(*pModel, At("run.pvx").c_str());
    ra::AppendIntermediateAnims(*pModel, At("none.pvx").c_str());
    ASSERT_EQ(pModel->GetAnimList()->GetCount(), 1u);
    EXPECT_EQ(pModel->GetAnimList()->FindNode("run"), 0);
    EXPECT_THROW(ra::AppendIntermediateAnims(*pModel, At("new.pvx").c_str()), Chunky::Exception);
    EXPECT_THROW(ra::AppendIntermediateAnims(*pModel, At("missing.pvx").c_str()), Chunky::Exception);
}

} // namespace
