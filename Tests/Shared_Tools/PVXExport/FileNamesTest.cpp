#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/PVXFilename.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"
#include "Tests/Shared_Tools/PVXExport/ExportFixture.h"
#include "Tests/Shared_Tools/PVXExport/ProjectFolder.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

TEST(PVXUtil, KnowsReferenceFiles) {
    for (const char* pName : {"x\\reference\\ref.pvx", "REFERENCE\\REF.PVX"})
        EXPECT_TRUE(PVXUtil::IsReferenceFile(pName)) << pName;
    for (const char* pName : {"EFERENCE\\REF.PVX", "x\\REFERENCE\\REF.PVX2", "x\\REFERENCE/REF.PVX", "REF.PVX", ""})
        EXPECT_FALSE(PVXUtil::IsReferenceFile(pName)) << pName;
    EXPECT_FALSE(PVXUtil::IsReferenceFile(nullptr));
}

TEST(PVXUtil, ModelsAreNamedAfterTheirFileOrFolder) {
    const std::pair<const char*, const char*> names[] = {
        {"Z:\\art\\Foo\\REFERENCE\\REF.PVX", "Foo"},
        {"TOOL:Z:\\art\\Foo\\reference\\ref.pvx", "Foo"},
        {"Z:/art/Foo.v2/REFERENCE/REF.PVX", "Foo.v2"},
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

// A project in the test's folder, found from there.
class ProjectNames : public ExportTest {
protected:
    ProjectFolder m_Project{m_Temp};
};

TEST_F(ProjectNames, FilesAreMappedByTheirProject) {
    std::string name;
    ASSERT_TRUE(PVXFilename::MapToKind(name, GetPath("datasource/Art/x.max").c_str(), 4));
    EXPECT_EQ(name, GetPath("DataGeneric/Art/x.max"));
    ASSERT_TRUE(PVXFilename::MapToData(name, GetPath("DataSource/Art/x.max").c_str()));
    EXPECT_EQ(name, "DATA:\\Art\\x.max");
    EXPECT_FALSE(PVXFilename::MapToData(name, GetPath("Elsewhere/x.max").c_str()));
    EXPECT_THAT(name, IsEmpty());
    EXPECT_TRUE(PVXUtil::TextureShortName(name, GetPath("DataSource/Art/Wood.old.tga").c_str()));
    EXPECT_EQ(name, "Art\\Wood.old");
    EXPECT_TRUE(PVXUtil::TextureShortName(name, GetPath("Elsewhere/Wood.tga").c_str()));
    EXPECT_THAT(name, IsEmpty());
}

TEST_F(ProjectNames, ExternalReferencesNameTheirModel) {
    const std::pair<const char*, const char*> files[] = {{"DataSource/Art/Foo/REFERENCE/REF.max", "art/foo"},
                                                         {"DataSource/Art/Foo/Bar.max", "art/foo/bar"},
                                                         {"DataSource/Art/Ref.max", "art/ref"},
                                                         {"Elsewhere/x.max", ""}};
    for (const auto& [pFile, pModel] : files) {
        scene::Node& node = AddQuad(pFile);
        scene::MakeXRef(node, GetPath(pFile));
        std::string name = "old";
        EXPECT_EQ(PVXUtil::ExternalModelName(&node, name), *pModel != 0);
        EXPECT_EQ(name, pModel);
    }
    EXPECT_EQ(Export(), 1);
    EXPECT_THAT(ReadBytes("Foo.pvx"), HasSubstr("art/foo/bar"));
    m_Scene.FindNode(files[0].first)->GetUserProperties().Add("ForceLocal", "");
    std::string name;
    EXPECT_FALSE(PVXUtil::ExternalModelName(m_Scene.FindNode(files[0].first), name));
    EXPECT_EQ(Export("Foo.pvx", {ID_XREF_AS_LOCAL, IDOK}), 1);
    EXPECT_THAT(ReadBytes("Foo.pvx"), testing::Not(HasSubstr("art/foo/bar")));
}

} // namespace
