#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/PVXFilename.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"
#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"
#include "Tests/Shared_Tools/PVXExport/ProjectFolder.h"

namespace {

using testing::IsEmpty;

TEST(PVXUtil, KnowsReferenceFiles) {
    EXPECT_TRUE(PVXUtil::IsReferenceFile("x\\reference\\ref.pvx"));
    EXPECT_TRUE(PVXUtil::IsReferenceFile("REFERENCE\\REF.PVX"));
    for (const char* pName : {"EFERENCE\\REF.PVX", "x\\REFERENCE\\REF.PVX2", "x\\REFERENCE/REF.PVX", "REF.PVX", ""})
        EXPECT_FALSE(PVXUtil::IsReferenceFile(pName)) << pName;
    EXPECT_FALSE(PVXUtil::IsReferenceFile(nullptr));
}

TEST(PVXUtil, ModelsAreNamedAfterTheirFileOrFolder) {
    const std::pair<const char*, const char*> names[] = {
        {"Z:\\art\\Foo\\REFERENCE\\REF.PVX", "Foo"},
        {"TOOL:Z:\\art\\Foo\\reference\\ref.pvx", "Foo"},
        {"Z:/art/Foo.v2/REFERENCE/REF.PVX", "Foo.v2"},
        {"Z:\\art\\Foo\\Run.PVX", "Run"},
        {"Z:\\art\\Foo\\Run.fast.pvx", "Run.fast"},
        {"Z:\\art\\Foo\\REF.PVX", "REF"},
        {"REF.PVX", "REF"},
        {"REFERENCE\\REF.PVX", ""},
        {"Z:\\a.b\\run", "run"},
        {"", ""},
    };
    for (const auto& [pPath, pName] : names) {
        std::string name = "old";
        EXPECT_TRUE(PVXUtil::ModelNameFromPath(name, pPath));
        EXPECT_EQ(name, pName) << pPath;
    }
}

TEST(PVXUtil, NormalisesPaths) {
    std::string path;
    PVXUtil::NormalisePath(path, "Art\\Foo/BAR.Max");
    EXPECT_EQ(path, "art/foo/bar.max");
}

// A project in the test's folder, found from there.
class ProjectNames : public ExportTest {
protected:
    ProjectFolder m_Project{m_Folder};
};

TEST_F(ProjectNames, FilesAreMappedByTheirProject) {
    std::string name;
    ASSERT_TRUE(PVXFilename::MapToKind(name, GetPath("datasource/Art/x.max").c_str(), 4));
    EXPECT_EQ(name, GetPath("DataGeneric/Art/x.max"));
    ASSERT_TRUE(PVXFilename::MapToData(name, GetPath("DataSource/Art/x.max").c_str()));
    EXPECT_EQ(name, "DATA:\\Art\\x.max");
    EXPECT_FALSE(PVXFilename::MapToData(name, GetPath("Elsewhere/x.max").c_str()));
    EXPECT_THAT(name, IsEmpty());
}

TEST_F(ProjectNames, TexturesHaveTheirDataPath) {
    std::string name;
    EXPECT_TRUE(PVXUtil::TextureShortName(name, GetPath("DataSource/Art/Wood.tga").c_str()));
    EXPECT_EQ(name, "Art\\Wood");
    EXPECT_TRUE(PVXUtil::TextureShortName(name, GetPath("Elsewhere/Wood.tga").c_str()));
    EXPECT_THAT(name, IsEmpty());
}

TEST_F(ProjectNames, ExternalReferencesNameTheirModel) {
    const std::pair<const char*, const char*> files[] = {{"DataSource/Art/Foo/REFERENCE/REF.max", "art/foo"},
                                                         {"DataSource/Art/Foo/Bar.max", "art/foo/bar"},
                                                         {"DataSource/Art/Ref.max", "art/ref"}};
    for (const auto& [pFile, pModel] : files) {
        scene::Node& node = scene::AddMesh(m_Scene, pFile, MakeQuad(), &AddMaterial(pFile));
        scene::MakeXRef(node, GetPath(pFile));
        std::string name;
        EXPECT_TRUE(PVXUtil::ExternalModelName(&node, name));
        EXPECT_EQ(name, pModel);
    }
    scene::Node& outside = scene::AddMesh(m_Scene, "Outside", MakeQuad(), &AddMaterial("P"));
    scene::MakeXRef(outside, GetPath("Elsewhere/x.max"));
    std::string name;
    EXPECT_FALSE(PVXUtil::ExternalModelName(&outside, name));

    EXPECT_EQ(Export(), 1);
    const std::string bytes = ReadBytes("Foo.pvx");
    EXPECT_THAT(bytes, testing::HasSubstr("art/foo/bar"));
    m_Presses = {ID_XREF_AS_LOCAL};
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(ReadBytes("Foo.pvx"), testing::Not(testing::HasSubstr("art/foo/bar")));
}

} // namespace
