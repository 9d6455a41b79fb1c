#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/Debug/Log/ProcessLog.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/Intermediate/AnimChunk.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"

namespace {

int s_Module; // stands for the module that the host would have loaded

HINSTANCE TestModule() { return reinterpret_cast<HINSTANCE>(&s_Module); }

// What a tool that reads the model brings up.
class ReaderServices {
public:
    ReaderServices() {
        FilePath::AddSource("TOOL", "HD", 99, std::make_shared<FilePathHDRaw>(false));
        gz::DeviceConfig config;
        config.name = "Null";
        gz::Start(config);
        Inv::Initialize();
    }
    ~ReaderServices() {
        Inv::Shutdown();
        gz::Stop();
        FilePath::RemoveSource("TOOL", "HD");
    }
};

} // namespace

ExportTest::ExportTest() {
    dbSetThrowOnAssert(true);
    PVXUtil::SetDLLInstance(TestModule());
    RegisterModuleResources(TestModule());
}

ExportTest::~ExportTest() { ProcessLog::Close(0); }

int ExportTest::Export(const std::string& fileName, std::vector<int> presses) {
    m_User.SetPresses(std::move(presses));
    m_User.GetShown().clear();
    const int result = m_Export.DoExport(GetPath(fileName).c_str(), nullptr, &m_Scene);
    m_Messages.clear();
    for (Window& dialog : m_User.GetShown())
        if (dialog.GetTemplateId() == IDD_ERRORS)
            m_Messages = dialog.FindControl(ID_ERRORS_LIST)->lines;
    return result;
}

int ExportTest::ExportSilently(const std::string& fileName) {
    m_User.GetShown().clear();
    return m_Export.DoExport(GetPath(fileName).c_str(), nullptr, &m_Scene, true);
}

void ExportTest::WithModel(const std::function<void(const RenderModel&)>& look, const std::string& fileName) {
    ASSERT_TRUE(IsThere(fileName));
    const ReaderServices services;
    const std::unique_ptr<RenderModel> pModel = ra::LoadIntermediate(("TOOL:" + GetPath(fileName)).c_str());
    ASSERT_TRUE(pModel);
    look(*pModel);
}

void ExportTest::WithShader(const std::function<void(const Shader&)>& look, uint32_t index) {
    WithModel([&](const RenderModel& model) { look(*model.GetMeshGroup()->GetShader(index).GetData()); });
}

void ExportTest::WithStoredAnim(const std::function<void(const AnimInterm&)>& look, const std::string& fileName) {
    ASSERT_TRUE(IsThere(fileName));
    const ReaderServices services;
    const auto pStream = FilePath::OpenStream(("TOOL:" + GetPath(fileName)).c_str(), ByteStream::Mode_Read);
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    chunky.EnterFolder(ra::s_ModelChunk, ra::s_ModelVersion);
    int count = 0;
    for (ChunkInfo child; chunky.NextChunk(child);)
        if (child.id == ra::s_AnimChunk && ++count == 1)
            look(*ra::intermediate::ReadAnim(chunky));
    EXPECT_EQ(count, 1);
}

Mesh ExportTest::MakeQuad(float size) {
    Mesh mesh;
    mesh.setNumVerts(4);
    mesh.verts = {{0, 0, 0}, {size, 0, 0}, {size, size, 0}, {0, size, 0}};
    mesh.setNumTVerts(4);
    mesh.tVerts = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    mesh.setNumFaces(2);
    mesh.setNumTVFaces(2);
    for (uint32_t i = 0; i < 2; ++i) {
        mesh.faces[i].setVerts(0, i + 1, i + 2);
        mesh.tvFace[i].setTVerts(0, i + 1, i + 2);
        mesh.faces[i].setSmGroup(1);
    }
    return mesh;
}

scene::Node& ExportTest::AddQuad(const std::string& name, scene::Node* pParent) {
    return scene::AddMesh(m_Scene, name, MakeQuad(), m_pPaint, pParent);
}

scene::Node& ExportTest::AddPainted(const std::string& material, scene::StandardSettings settings) {
    return scene::AddMesh(m_Scene, "On" + material, MakeQuad(), &AddMaterial(material, std::move(settings)));
}

scene::StandardSettings ExportTest::WithMaps(const std::vector<std::pair<int, Texmap*>>& maps) {
    scene::StandardSettings settings;
    for (const auto& [slot, pMap] : maps)
        settings.maps[static_cast<size_t>(slot)].pMap = pMap;
    return settings;
}

scene::StandardMaterial& ExportTest::AddMaterial(const std::string& name, scene::StandardSettings settings) {
    return m_Scene.Make<scene::StandardMaterial>(name, std::move(settings));
}
