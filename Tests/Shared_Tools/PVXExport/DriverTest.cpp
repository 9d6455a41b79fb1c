#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/Debug/Log/ProcessLog.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/RenderAnim/Marker.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/PVXErrors.h"
#include "Shared_Tools/PVXExport/PVXExportClassDesc.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ExportDriver : public ExportTest {
protected:
    void AddThings() {
        scene::AddMesh(m_Scene, "Body", MakeQuad(), &AddMaterial("Paint"));
        scene::AddBone(m_Scene, "Hip");
        scene::AddPoint(m_Scene, "Muzzle");
        scene::AddCamera(m_Scene, "View", {});
    }

    // Nothing of an export may be left when the next one starts.
    void ExpectNothingLeft() {
        EXPECT_FALSE(PVXErrors::Exists());
        EXPECT_FALSE(Inv::IsInitialized());
        EXPECT_EQ(gz::GetDevice(), nullptr);
        EXPECT_FALSE(FilePath::HasAlias("TOOL:x"));
        EXPECT_FALSE(ProcessLog::IsOpen());
    }
};

TEST_F(ExportDriver, DescribesItself) {
    PVXExportClassDesc& desc = GetPVXExportClassDesc();
    EXPECT_TRUE(desc.IsPublic());
    EXPECT_EQ(desc.SuperClassID(), 0xa20u);
    EXPECT_EQ(desc.ClassID(), Class_ID(0x43f317c7, 0x24937085));
    EXPECT_STREQ(desc.Category(), "Scene Exporter");
    EXPECT_STREQ(desc.InternalName(), "PVXExport");
    const std::unique_ptr<SceneExport> pExport(static_cast<SceneExport*>(desc.Create(false)));
    EXPECT_EQ(pExport->ExtCount(), 1);
    EXPECT_STREQ(pExport->Ext(0), "PVX");
    EXPECT_STREQ(pExport->Ext(1), "");
    EXPECT_EQ(pExport->Version(), 2u);
    for (const char* pText : {pExport->LongDesc(), pExport->AuthorName(), pExport->CopyrightMessage()})
        EXPECT_STRNE(pText, "");
}

TEST_F(ExportDriver, WritesModelAndLogAndLeavesNothingUp) {
    AddThings();
    EXPECT_EQ(Export("Foo.pvx"), 1);
    EXPECT_EQ(m_OptionsShown, 1);
    EXPECT_EQ(m_ErrorsShown, 0);
    EXPECT_TRUE(IsThere("Foo.log"));
    ExpectNothingLeft();
    WithModel([](const RenderModel& model) {
        EXPECT_STREQ(model.GetName(), "Foo");
        EXPECT_EQ(model.GetMeshGroup()->GetMeshCount(), 1u);
        EXPECT_EQ(model.GetSkeleton()->GetBoneCount(), 1u);
        EXPECT_EQ(model.GetOwnMarkers().size(), 1u);
        EXPECT_EQ(model.GetCameraCount(), 1u);
    });
}

TEST_F(ExportDriver, TwoExportsGiveTheSameBytes) {
    AddThings();
    EXPECT_EQ(Export("Foo.pvx"), 1);
    const std::string first = ReadBytes("Foo.pvx");
    EXPECT_EQ(Export("Foo.pvx"), 1);
    EXPECT_EQ(ReadBytes("Foo.pvx"), first);
    PVXExport another;
    EXPECT_EQ(another.DoExport(GetPath("Foo.pvx").c_str(), nullptr, &m_Scene), 1);
    EXPECT_EQ(ReadBytes("Foo.pvx"), first);
    ExpectNothingLeft();
}

TEST_F(ExportDriver, BoxesToggleWhatIsExported) {
    AddThings();
    Export("Both.pvx");
    m_Presses = {ID_EXPORT_ANIM_KEYS, ID_EXPORT_MESHES};
    EXPECT_EQ(Export("Nothing.pvx"), 1);
    EXPECT_THAT(ReadBytes("Both.pvx"), HasSubstr("MSGR"));
    EXPECT_THAT(ReadBytes("Nothing.pvx"), Not(HasSubstr("MSGR")));
    m_Presses = {ID_EXPORT_MESHES, ID_EXPORT_MESHES};
    Export("Twice.pvx");
    EXPECT_THAT(ReadBytes("Twice.pvx"), HasSubstr("MSGR"));
}

TEST_F(ExportDriver, CancelWritesNoModelAndKeepsTheLogOpen) {
    AddThings();
    m_LastPress = IDCANCEL;
    EXPECT_EQ(Export("Foo.pvx"), 1);
    EXPECT_FALSE(IsThere("Foo.pvx"));
    EXPECT_TRUE(ProcessLog::IsOpen());
    EXPECT_FALSE(FilePath::HasAlias("TOOL:x"));
    // The next one finds the log and goes on with it.
    m_LastPress = IDOK;
    EXPECT_EQ(Export("Bar.pvx"), 1);
    EXPECT_TRUE(IsThere("Bar.pvx"));
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("Assertion of"));
    ExpectNothingLeft();
}

TEST_F(ExportDriver, SilentlyTheNameDecides) {
    AddThings();
    std::filesystem::create_directories(m_Folder / "Car/REFERENCE");
    EXPECT_EQ(Export("Car/REFERENCE/ref.pvx", true), 1);
    EXPECT_EQ(Export("Run.pvx", true), 1);
    EXPECT_EQ(m_OptionsShown, 0);
    for (const char* pModelChunk : {"MSGR", "SKEL", "MARK", "SHDR"}) {
        EXPECT_THAT(ReadBytes("Car/REFERENCE/ref.pvx"), HasSubstr(pModelChunk));
        EXPECT_THAT(ReadBytes("Run.pvx"), Not(HasSubstr(pModelChunk)));
    }
    EXPECT_THAT(ReadBytes("Car/REFERENCE/ref.pvx"), Not(HasSubstr("ANIM")));
    EXPECT_THAT(ReadBytes("Run.pvx"), HasSubstr("ANIM"));
    WithModel([](const RenderModel& model) { EXPECT_STREQ(model.GetName(), "Car"); }, "Car/REFERENCE/ref.pvx");
}

TEST_F(ExportDriver, IgnoreShadersWorksByBeingThere) {
    AddThings();
    Export("With.pvx");
    m_Scene.AddFileProperty(PRSPEC_PROPID, PROPVARIANT{});
    m_Scene.AddFileProperty("ignoreshaders", PROPVARIANT{});
    EXPECT_EQ(Export("Without.pvx"), 1);
    EXPECT_EQ(m_ListenerText, "Exporter: IgnoreShaders property has turned off shaders!\n");
    EXPECT_THAT(ReadBytes("With.pvx"), HasSubstr("SHDR"));
    EXPECT_THAT(ReadBytes("Without.pvx"), Not(HasSubstr("SHDR")));
    EXPECT_THAT(ReadBytes("Without.pvx"), HasSubstr("MSGR"));
}

TEST_F(ExportDriver, ASceneWithoutMeshesIsAnErrorOnlyForMeshes) {
    EXPECT_EQ(Export("Foo.pvx"), 0);
    EXPECT_THAT(m_Messages, ElementsAre("Error   : No meshes to export!"));
    EXPECT_FALSE(IsThere("Foo.pvx"));
    m_Presses = {ID_EXPORT_MESHES};
    EXPECT_EQ(Export("Foo.pvx"), 1);
    EXPECT_THAT(m_Messages, IsEmpty());
    EXPECT_FALSE(IsThere("Foo.pvx"));
    ExpectNothingLeft();
}

TEST_F(ExportDriver, WarningsAreShownAndErrorsFail) {
    scene::AddMesh(m_Scene, "Bare", MakeQuad());
    EXPECT_EQ(Export("Foo.pvx"), 1);
    EXPECT_THAT(m_Messages, ElementsAre("Warning : Object [Bare] has no material assigned to it."));
    scene::AddMesh(m_Scene, "Odd", MakeQuad(), &m_Scene.Make<scene::OtherMaterial>("Lava", "Raytrace"));
    EXPECT_EQ(Export("Foo.pvx"), 0);
    EXPECT_EQ(m_Messages.size(), 2u);
    EXPECT_TRUE(IsThere("Foo.pvx"));
}

TEST_F(ExportDriver, ADeviceThatDoesNotStartIsToldOnTheListener) {
    AddThings();
    gz::DeviceConfig config;
    config.name = "Null";
    ASSERT_TRUE(gz::Start(config));
    EXPECT_EQ(Export("Foo.pvx"), 0);
    EXPECT_EQ(m_ListenerText, "Unable to initialize GLAZE!\n");
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("Assertion of (s_pWarehouse) failed."));
    ExpectNothingLeft();
    EXPECT_EQ(Export("Foo.pvx"), 1);
}

class ThrowingSource : public scene::MeshSource {
public:
    std::unique_ptr<Mesh> Build(TimeValue) const override { throw std::runtime_error("the buffer is cut off"); }
};

TEST_F(ExportDriver, WhatTheSceneThrowsEndsTheExportWithItsText) {
    AddThings();
    scene::AddMesh(m_Scene, "Cut", std::make_unique<ThrowingSource>());
    EXPECT_EQ(Export("Foo.pvx"), 0);
    EXPECT_EQ(m_ListenerText, "the buffer is cut off\n");
    EXPECT_FALSE(IsThere("Foo.pvx"));
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("the buffer is cut off"));
    ExpectNothingLeft();
}

TEST_F(ExportDriver, AFileThatCannotBeWrittenIsInTheLog) {
    AddThings();
    std::filesystem::create_directories(m_Folder / "Foo.pvx");
    EXPECT_EQ(Export("Foo.pvx"), 1);
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("RENDER ANIM -- "));
    ExpectNothingLeft();
}

TEST_F(ExportDriver, ANameWithoutADotIsAMistake) {
    AddThings();
    EXPECT_THROW(m_Export.DoExport("Z:\\nowhere\\Foo", nullptr, &m_Scene), std::runtime_error);
    ExpectNothingLeft();
}

TEST(PVXErrorsTest, MessagesKeepTheirWholeText) {
    PVXErrors::Create(nullptr, nullptr);
    const std::string longText(1000, 'x');
    PVXErrors::Get().Error("%s!", longText.c_str());
    PVXErrors::Get().Warning("plain");
    EXPECT_THAT(PVXErrors::Get().GetMessages(), ElementsAre("Error   : " + longText + "!", "Warning : plain"));
    EXPECT_EQ(PVXErrors::Get().GetErrorCount(), 1);
    EXPECT_EQ(PVXErrors::Get().GetWarningCount(), 1);
    PVXErrors::Get().Clear();
    EXPECT_THAT(PVXErrors::Get().GetMessages(), IsEmpty());
    EXPECT_EQ(PVXErrors::Get().GetErrorCount(), 0);
    PVXErrors::Destroy();
}

} // namespace
