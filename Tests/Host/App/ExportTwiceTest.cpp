#include "Host/App/ExportCommand.h"
#include "Host/App/ModuleLoader.h"
#include "Host/App/TerminalDialogs.h"
#include "Host/Gltf/Loader.h"
#include "Host/Scene/Scene.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Tests/Host/App/SmallScene.h"
#include "Tests/Host/App/TestFolder.h"

namespace {

class ExportTwice : public TestFolder {
protected:
    std::string m_Scene = Write("tile.glb", MakeTileScene());
    Messages m_Messages{stderr, {.quiet = true}};
};

TEST_F(ExportTwice, OneExporterGivesTheSameBytesAgain) {
    TerminalDialogs dialogs(m_Messages, {}, {});
    SetDialogShower(&dialogs);
    {
        const ModuleLoader module;
        const std::unique_ptr<scene::Scene> pScene = gltf::Load(OSFile::FromNative(m_Scene), {}, {});
        const std::unique_ptr<SceneExport> pExporter = module.CreateExporter();
        const std::string output = OSFile::FromNative(At("tile.pvx"));
        ASSERT_EQ(pExporter->DoExport(output.c_str(), nullptr, pScene.get()), 1);
        const std::string first = Read("tile.pvx");
        ASSERT_EQ(pExporter->DoExport(output.c_str(), nullptr, pScene.get()), 1);
        EXPECT_EQ(Read("tile.pvx"), first);
        EXPECT_GT(first.size(), 24u);
    }
    SetDialogShower(nullptr);
}

// The module comes and goes with each run.
TEST_F(ExportTwice, OneProcessCanLoadTheModuleAgain) {
    const ExportArguments arguments{.scene = m_Scene, .output = At("tile.pvx"), .clip = {}};
    ASSERT_EQ(RunExport(arguments, "", m_Messages, false), 0);
    const std::string first = Read("tile.pvx");
    ASSERT_EQ(RunExport(arguments, "", m_Messages, false), 0);
    EXPECT_EQ(Read("tile.pvx"), first);
}

} // namespace
