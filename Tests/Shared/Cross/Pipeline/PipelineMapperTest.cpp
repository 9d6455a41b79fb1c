#include "Shared/Cross/Pipeline/ToolsData.h"
#include "Tests/Shared/Cross/Pipeline/ProjectTree.h"

namespace {

using testing::ElementsAre;

class MapperTest : public ProjectTree {
protected:
    // foo has two extras and the parent base, base has one extra and the parent root.
    void InitializeFamily() {
        ASSERT_EQ(Initialize("[Global]\nToolsData=Tools\n" +
                             Project("foo", "Foo", "DataExtra= x1 ;; x2\nParent=BASE\n") +
                             Project("base", "Base", "DataExtra=x3\nParent=root\n") +
                             Project("root", "Root", "Parent=unknown\n")),
                  0);
    }

    // The ids of those who have the file, in the order in which they are asked.
    std::vector<std::string> Asked(const std::string& file) {
        struct Listener : FilePath::OpenListener {
            void OnOpen(const char*, const char*, const char* pSourceId) override { id = pSourceId; }
            std::string id;
        } listener;
        FilePath::AddOpenListener(listener);
        std::vector<std::string> ids;
        while (FilePath::OpenStream(file.c_str(), ByteStream::Mode_Read)) {
            ids.push_back(listener.id);
            std::string full = file;
            EXPECT_TRUE(FilePath::GetFullName(full, ByteStream::Mode_Read));
            std::filesystem::remove(OSFile::ToNative(full));
        }
        FilePath::RemoveOpenListener(listener);
        return ids;
    }

    void WriteEverywhere() {
        for (const char* const pFolder : {"Tools", "Foo\\Data", "x1", "x2", "Base\\Data", "x3", "Root\\Data"})
            Write(std::string("proj\\") + pFolder + "\\art\\x.obm", pFolder);
    }
    static bool CanWrite(const char* pName) { return FilePath::OpenStream(pName, ByteStream::Mode_Write) != nullptr; }
};

TEST_F(MapperTest, ProjectThenExtrasThenParents) {
    InitializeFamily();
    WriteEverywhere();
    ToolsData tools;
    ASSERT_TRUE(tools.Map());
    Pipeline::Mapper mapper = Pipeline::Get()->CreateMapper("FOO", Pipeline::Kind_Final, false);
    mapper.Map();
    EXPECT_TRUE(CanWrite("DATA:art\\x.obm"));
    EXPECT_EQ(Read("proj\\Foo\\Data\\art\\x.obm"), "") << "writes reach the project";
    EXPECT_EQ(Read("proj\\Tools\\art\\x.obm"), "Tools");
    EXPECT_THAT(Asked("DATA:art\\x.obm"),
                ElementsAre("Tools Data", "foo", "foo-extra-01", "foo-extra-02", "base", "base-extra-01", "root"));
    EXPECT_THAT(m_Reports.GetWarnings(), ElementsAre());
    mapper = Pipeline::Get()->CreateMapper("base", Pipeline::Kind_Final, true);
    tools.Unmap();
    WriteEverywhere();
    mapper.Map();
    EXPECT_THAT(Asked("DATA:art\\x.obm"), ElementsAre("base", "base-extra-01"));
}

TEST_F(MapperTest, EachKindHasItsAliasAndOnlyOneHasExtras) {
    InitializeFamily();
    const std::pair<Pipeline::DataKind, const char*> s_Aliases[] = {
        {Pipeline::Kind_Source, "DATASRC:x"},      {Pipeline::Kind_SourceShared, "DATASRCSHARED:x"},
        {Pipeline::Kind_Intermediate, "INTERM:x"}, {Pipeline::Kind_Generic, "GENERIC:x"},
        {Pipeline::Kind_Locale, "LOCALE:x"},       {Pipeline::Kind_Preview, "PREVIEW:x"}};
    for (const auto& [kind, pName] : s_Aliases) {
        Pipeline::Mapper mapper = Pipeline::Get()->CreateMapper("foo", kind, false);
        mapper.Map();
        EXPECT_TRUE(CanWrite(pName)) << pName;
        EXPECT_THAT(Asked(pName), ElementsAre("foo"));
        mapper.Unmap();
        EXPECT_FALSE(CanWrite(pName)) << pName;
    }
    EXPECT_FALSE(std::filesystem::exists(Native("proj\\x1")));
    EXPECT_THROW(Pipeline::Get()->CreateMapper("root", Pipeline::Kind_Burn, true), std::runtime_error);
    EXPECT_THROW(Pipeline::Get()->CreateMapper(nullptr, Pipeline::Kind_Final, true), std::runtime_error);
}

TEST_F(MapperTest, MappingMakesFoldersUnlessForReading) {
    InitializeFamily();
    Pipeline::Mapper mapper = Pipeline::Get()->CreateMapper("foo", Pipeline::Kind_Generic, false);
    mapper.MapReadOnly();
    EXPECT_TRUE(m_Reports.HasWarning("PIPELINE -- Failed to map pipeline alias 'GENERIC', folder '" +
                                     Path("proj\\Foo\\gen") + "'"));
    EXPECT_FALSE(std::filesystem::exists(Native("proj\\Foo")));
    EXPECT_THROW(mapper.Map(), std::runtime_error) << "it is mapped";
    EXPECT_TRUE(m_Reports.HasWarning("m_shared.get() != NULL && !m_shared->mapped && !m_shared->mappings.empty()"));
    mapper.Unmap();
    EXPECT_THROW(mapper.Unmap(), std::runtime_error);
    {
        Pipeline::Mapper copy = mapper;
        copy.Map();
        EXPECT_TRUE(std::filesystem::is_directory(Native("proj\\Base\\gen")));
    }
    EXPECT_TRUE(CanWrite("GENERIC:x")) << "as long as a handle lives";
    mapper = Pipeline::Mapper();
    EXPECT_FALSE(CanWrite("GENERIC:x"));
    EXPECT_THROW(mapper.Map(), std::runtime_error);
}

TEST_F(MapperTest, WhatCantBeMappedIsLeftOut) {
    std::string extras = "missing e";
    for (int i = 0; i < 250; ++i) // more than there are priorities
        extras += " e";
    ASSERT_EQ(Initialize(Project("foo", "Foo", "DataExtra=" + extras + "\n")), 0);
    Write("proj\\e\\x", "");
    Pipeline::Mapper mapper = Pipeline::Get()->CreateMapper("foo", Pipeline::Kind_Final, false);
    mapper.Map();
    EXPECT_TRUE(m_Reports.HasWarning("PIPELINE -- Failed to map pipeline alias 'DATA', folder '" +
                                     Path("proj\\missing") + "'"));
    EXPECT_EQ(m_Reports.CountWarnings("Failed to map"), 53u);
    EXPECT_THAT(Asked("DATA:x"), ElementsAre("foo-extra-02"));
    m_Reports.Clear();
    mapper.Unmap();
    EXPECT_THAT(m_Reports.GetWarnings(), ElementsAre());
}

TEST_F(MapperTest, RelationsAndEmptyHandles) {
    InitializeFamily();
    const auto make = [](const char* pProject) {
        return Pipeline::Get()->CreateMapper(pProject, Pipeline::Kind_Final, false);
    };
    const Pipeline::Mapper foo = make("foo");
    EXPECT_TRUE(foo.IsProject("Foo") && !foo.IsProject(nullptr));
    for (const char* const pParent : {"Base", "ROOT", "unknown"})
        EXPECT_TRUE(foo.IsChildOf(pParent)) << pParent;
    EXPECT_FALSE(foo.IsChildOf("foo"));
    for (const Pipeline::Mapper& mapper : {make("nobody"), make(nullptr), Pipeline::Mapper()})
        EXPECT_TRUE(mapper.IsEmpty() && mapper.IsProject(nullptr) && !mapper.IsProject("foo") &&
                    !mapper.IsChildOf("foo"));
    ToolsData tools;
    EXPECT_FALSE(tools.Map()) << "there is no such folder";
    EXPECT_TRUE(m_Reports.HasWarning("Failed to map pipeline alias 'DATA', folder '" + Path("proj\\Tools") + "'"));
}

TEST_F(MapperTest, ParentsInACircleEnd) {
    ASSERT_EQ(Initialize(Project("a", "A", "Parent=b\n") + Project("b", "B", "Parent=a\n")), 0);
    Pipeline::Mapper mapper = Pipeline::Get()->CreateMapper("a", Pipeline::Kind_Generic, false);
    mapper.Map();
    Write("proj\\A\\gen\\x", "");
    Write("proj\\B\\gen\\x", "");
    EXPECT_THAT(Asked("GENERIC:x"), ElementsAre("a", "b"));
    EXPECT_TRUE(mapper.IsChildOf("a"));
    EXPECT_TRUE(m_Reports.HasWarning("PIPELINE -- the parents of project 'a' run in a circle"));
    EXPECT_FALSE(ToolsData().Map());
    EXPECT_TRUE(m_Reports.HasWarning("'ToolsData' not listed under [Global] in pipeline.ini"));
}

} // namespace
