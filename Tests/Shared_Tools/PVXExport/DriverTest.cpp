#include "Host/Sdk/HostSetup.h"
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
#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ExportDriver : public ExportTest {
protected:
    void AddThings() {
        AddQuad("Body");
        scene::AddBone(m_Scene, "Hip");
        scene::AddPoint(m_Scene, "Muzzle");
        scene::AddCamera(m_Scene, "View", {});
    }
    std::vector<int> ShownDialogs() {
        std::vector<int> ids;
        for (const Window& dialog : m_User.GetShown())
            ids.push_back(dialog.GetTemplateId());
        return ids;
    }

    // Nothing of an export may be left when the next one starts.
    static void ExpectNothingLeft() {
        EXPECT_FALSE(PVXErrors::Exists());
        EXPECT_FALSE(Inv::IsInitialized());
        EXPECT_EQ(gz::GetDevice(), nullptr);
        EXPECT_FALSE(FilePath::HasAlias("TOOL:x"));
        EXPECT_FALSE(ProcessLog::IsOpen());
        EXPECT_EQ(GetCursor(), Cursor::Arrow);
    }
};

TEST_F(ExportDriver, WritesModelAndLogAndLeavesNothingUp) {
    AddThings();
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(ShownDialogs(), ElementsAre(IDD_OPTIONS));
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

TEST_F(ExportDriver, BoxesToggleWhatIsExported) {
    AddThings();
    EXPECT_EQ(Export("Nothing.pvx", {ID_EXPORT_ANIM_KEYS, ID_EXPORT_MESHES, IDOK}), 1);
    for (const char* pChunk : {"MSGR", "ANIM"})
        EXPECT_THAT(ReadBytes("Nothing.pvx"), Not(HasSubstr(pChunk)));
    EXPECT_EQ(Export("Both.pvx", {ID_EXPORT_MESHES, ID_EXPORT_MESHES, IDOK}), 1);
    for (const char* pChunk : {"MSGR", "ANIM"})
        EXPECT_THAT(ReadBytes("Both.pvx"), HasSubstr(pChunk));
}

TEST_F(ExportDriver, CancelWritesNoModelAndKeepsTheLogOpen) {
    AddThings();
    EXPECT_EQ(Export("Foo.pvx", {IDCANCEL}), 1);
    EXPECT_FALSE(IsThere("Foo.pvx"));
    EXPECT_TRUE(ProcessLog::IsOpen());
    EXPECT_FALSE(FilePath::HasAlias("TOOL:x"));
    // The next one finds the log and goes on with it.
    EXPECT_EQ(Export("Bar.pvx"), 1);
    EXPECT_TRUE(IsThere("Bar.pvx"));
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("Assertion of"));
    ExpectNothingLeft();
}

TEST_F(ExportDriver, SilentlyTheNameDecides) {
    AddThings();
    m_Temp.MakeFolder("Car/REFERENCE");
    EXPECT_EQ(ExportSilently("Car/REFERENCE/ref.pvx"), 1);
    EXPECT_EQ(ExportSilently("Run.pvx"), 1);
    EXPECT_THAT(ShownDialogs(), IsEmpty());
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
    m_Scene.AddFileProperty(PRSPEC_PROPID, PROPVARIANT{});
    m_Scene.AddFileProperty("ignoreshaders", PROPVARIANT{});
    EXPECT_EQ(Export(), 1);
    EXPECT_EQ(m_Listener.GetText(), "Exporter: IgnoreShaders property has turned off shaders!\n");
    EXPECT_THAT(ReadBytes("Foo.pvx"), Not(HasSubstr("SHDR")));
    EXPECT_THAT(ReadBytes("Foo.pvx"), HasSubstr("MSGR"));
}

TEST_F(ExportDriver, ASceneWithoutMeshesIsAnErrorOnlyForMeshes) {
    EXPECT_EQ(Export(), 0);
    EXPECT_THAT(m_Messages, ElementsAre("Error   : No meshes to export!"));
    EXPECT_EQ(Export("Foo.pvx", {ID_EXPORT_MESHES, IDOK}), 1);
    EXPECT_THAT(m_Messages, IsEmpty());
    EXPECT_FALSE(IsThere("Foo.pvx"));
    ExpectNothingLeft();
}

TEST_F(ExportDriver, WarningsAreShownAndAreNoFailure) {
    scene::AddMesh(m_Scene, "Bare", MakeQuad());
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(m_Messages, ElementsAre("Warning : Object [Bare] has no material assigned to it."));
    EXPECT_TRUE(m_User.GetShown().back().IsCentred());
}

TEST_F(ExportDriver, ADeviceThatDoesNotStartIsToldOnTheListener) {
    AddThings();
    gz::DeviceConfig config;
    config.name = "Null";
    ASSERT_TRUE(gz::Start(config));
    EXPECT_EQ(Export(), 0);
    EXPECT_EQ(m_Listener.GetText(), "Unable to initialize GLAZE!\n");
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("Assertion of (s_pWarehouse) failed."));
    ExpectNothingLeft();
    EXPECT_EQ(Export(), 1);
}

class ThrowingSource : public scene::MeshSource {
public:
    std::unique_ptr<Mesh> Build(TimeValue) const override {
        EXPECT_EQ(GetCursor(), Cursor::Wait);
        throw std::runtime_error("the buffer is cut off");
    }
};

TEST_F(ExportDriver, WhatTheSceneThrowsEndsTheExportWithItsText) {
    AddThings();
    scene::AddMesh(m_Scene, "Cut", std::make_unique<ThrowingSource>());
    EXPECT_EQ(Export(), 0);
    EXPECT_EQ(m_Listener.GetText(), "the buffer is cut off\n");
    EXPECT_FALSE(IsThere("Foo.pvx"));
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("the buffer is cut off"));
    ExpectNothingLeft();
}

TEST_F(ExportDriver, NamesThatNothingCanBeWrittenUnder) {
    AddThings();
    m_Temp.MakeFolder("Foo.pvx");
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(ReadBytes("Foo.log"), HasSubstr("RENDER ANIM -- "));
    ExpectNothingLeft();
    EXPECT_THROW(m_Export.DoExport("Z:\\nowhere\\Foo", nullptr, &m_Scene), std::runtime_error) << "without a dot";
    ExpectNothingLeft();
}

TEST(PVXErrorsTest, MessagesKeepTheirWholeText) {
    PVXErrors::Create(nullptr, nullptr);
    const std::string longText(1000, 'x');
    PVXErrors::Get().Error("%s!", longText.c_str());
    PVXErrors::Get().Warning("plain");
    EXPECT_THAT(PVXErrors::Get().GetMessages(), ElementsAre("Error   : " + longText + "!", "Warning : plain"));
    EXPECT_EQ(PVXErrors::Get().GetErrorCount(), 1);
    PVXErrors::Destroy();
}

} // namespace
