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
    EXPECT_STREQ(mapper.GetProject(), "foo");
    mapper.Map();
    EXPECT_TRUE(CanWrite("DATA:art\\x.obm"));
    EXPECT_EQ(Read("proj\\Foo\\Data\\art\\x.obm"), "") << "writes reach the project";
    EXPECT_EQ(Read("proj\\Tools\\art\\x.obm"), "Tools");
    EXPECT_THAT(Asked("DATA:art\\x.obm"),
                ElementsAre("Tools Data", "foo", "foo-extra-01", "foo-extra-02", "base", "base-extra-01", "root"));
    EXPECT_THAT(m_Reports.GetWarnings(), ElementsAre());
}

TEST_F(MapperTest, OtherKindsHaveNoExtrasAndOneProjectNoParents) {
    InitializeFamily();
    for (const char* const pProject : {"foo", "base", "root"})
        Write(std::string("proj\\") + pProject + "\\src\\x.tga", "");
    Pipeline::Mapper whole = Pipeline::Get()->CreateMapper("foo", Pipeline::Kind_Source, false);
    whole.Map();
    EXPECT_THAT(Asked("DATASRC:x.tga"), ElementsAre("foo", "base", "root"));
    whole.Unmap();
    Write("proj\\Foo\\Data\\x", "");
    Write("proj\\Base\\Data\\x", "");
    Pipeline::Mapper alone = Pipeline::Get()->CreateMapper("foo", Pipeline::Kind_Final, true);
    std::filesystem::create_directories(Native("proj\\x1"));
    std::filesystem::create_directories(Native("proj\\x2"));
    alone.Map();
    EXPECT_THAT(Asked("DATA:x"), ElementsAre("foo"));
    EXPECT_TRUE(alone.IsChildOf("base"));
}

TEST_F(MapperTest, EachKindHasItsAlias) {
    InitializeFamily();
    const std::pair<Pipeline::DataKind, const char*> s_Aliases[] = {
        {Pipeline::Kind_Source, "DATASRC:x"},      {Pipeline::Kind_SourceShared, "DATASRCSHARED:x"},
        {Pipeline::Kind_Intermediate, "INTERM:x"}, {Pipeline::Kind_Generic, "GENERIC:x"},
        {Pipeline::Kind_Final, "DATA:x"},          {Pipeline::Kind_Locale, "LOCALE:x"},
        {Pipeline::Kind_Preview, "PREVIEW:x"}};
    for (const auto& [kind, pName] : s_Aliases) {
        Pipeline::Mapper mapper = Pipeline::Get()->CreateMapper("root", kind, true);
        mapper.Map();
        EXPECT_TRUE(CanWrite(pName)) << pName;
        EXPECT_NE(OSFile::FileAttr((Pipeline::Get()->GetFolder("root", kind) + std::string("\\x")).c_str()), 0u)
            << pName;
        mapper.Unmap();
        EXPECT_FALSE(CanWrite(pName)) << pName;
    }
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
    mapper.Unmap();
    mapper.Map();
    EXPECT_TRUE(std::filesystem::is_directory(Native("proj\\Foo\\gen")));
    EXPECT_TRUE(std::filesystem::is_directory(Native("proj\\Base\\gen")));
    mapper.Unmap();
    mapper.MapReadOnly();
    EXPECT_FALSE(CanWrite("GENERIC:x"));
}

TEST_F(MapperTest, WhatCantBeMappedIsLeftOut) {
    ASSERT_EQ(Initialize(Project("foo", "Foo", "DataExtra=missing there\n")), 0);
    Write("proj\\there\\x", "");
    Pipeline::Mapper mapper = Pipeline::Get()->CreateMapper("foo", Pipeline::Kind_Final, false);
    mapper.Map();
    EXPECT_TRUE(m_Reports.HasWarning("PIPELINE -- Failed to map pipeline alias 'DATA', folder '" +
                                     Path("proj\\missing") + "'"));
    EXPECT_THAT(Asked("DATA:x"), ElementsAre("foo-extra-02"));
    m_Reports.Clear();
    mapper.Unmap();
    EXPECT_THAT(m_Reports.GetWarnings(), ElementsAre());
}

TEST_F(MapperTest, ItsStates) {
    InitializeFamily();
    Pipeline::Mapper mapper = Pipeline::Get()->CreateMapper("root", Pipeline::Kind_Generic, false);
    EXPECT_THROW(mapper.Unmap(), std::runtime_error);
    {
        Pipeline::Mapper copy = mapper;
        copy.Map();
        EXPECT_THROW(mapper.Map(), std::runtime_error);
        EXPECT_TRUE(m_Reports.HasWarning("m_shared.get() != NULL && !m_shared->mapped && !m_shared->mappings.empty()"));
    }
    EXPECT_TRUE(CanWrite("GENERIC:x")) << "as long as a handle lives";
    mapper = Pipeline::Mapper();
    EXPECT_FALSE(CanWrite("GENERIC:x"));
    EXPECT_THROW(mapper.Map(), std::runtime_error);
}

TEST_F(MapperTest, RelationsAndEmptyHandles) {
    InitializeFamily();
    const Pipeline::Mapper foo = Pipeline::Get()->CreateMapper("foo", Pipeline::Kind_Final, false);
    EXPECT_TRUE(foo.IsProject("Foo") && !foo.IsProject(nullptr));
    for (const char* const pParent : {"Base", "ROOT", "unknown"})
        EXPECT_TRUE(foo.IsChildOf(pParent)) << pParent;
    EXPECT_FALSE(foo.IsChildOf("foo"));
    const Pipeline::Mapper unknown = Pipeline::Get()->CreateMapper("nobody", Pipeline::Kind_Final, false);
    const Pipeline::Mapper none = Pipeline::Get()->CreateMapper(nullptr, Pipeline::Kind_Final, false);
    for (const Pipeline::Mapper& mapper : {unknown, none, Pipeline::Mapper()}) {
        EXPECT_TRUE(mapper.IsEmpty());
        EXPECT_TRUE(mapper.IsProject(nullptr));
        EXPECT_FALSE(mapper.IsProject("foo"));
        EXPECT_FALSE(mapper.IsChildOf("foo"));
    }
}

TEST_F(MapperTest, ParentsInACircleEnd) {
    ASSERT_EQ(
        Initialize(Project("a", "A", "Parent=b\n") + Project("b", "B", "Parent=a\n") + Project("c", "C", "Parent=c\n")),
        0);
    Pipeline::Mapper mapper = Pipeline::Get()->CreateMapper("a", Pipeline::Kind_Generic, false);
    mapper.Map();
    Write("proj\\A\\gen\\x", "");
    Write("proj\\B\\gen\\x", "");
    EXPECT_THAT(Asked("GENERIC:x"), ElementsAre("a", "b"));
    EXPECT_TRUE(mapper.IsChildOf("a"));
    EXPECT_TRUE(m_Reports.HasWarning("PIPELINE -- the parents of project 'a' run in a circle"));
    EXPECT_FALSE(Pipeline::Get()->CreateMapper("c", Pipeline::Kind_Generic, false).IsEmpty());
}

TEST_F(MapperTest, MoreFoldersThanPriorities) {
    std::string extras;
    for (int i = 0; i < 250; ++i)
        extras += " e";
    ASSERT_EQ(Initialize(Project("foo", "Foo", "DataExtra=" + extras + "\n")), 0);
    std::filesystem::create_directories(Native("proj\\e"));
    Pipeline::Mapper mapper = Pipeline::Get()->CreateMapper("foo", Pipeline::Kind_Final, false);
    mapper.Map();
    EXPECT_EQ(m_Reports.CountWarnings("Failed to map"), 50u);
}

TEST_F(MapperTest, ToolsDataThatIsMissing) {
    ASSERT_EQ(Initialize(Project("foo", "Foo")), 0);
    ToolsData tools;
    EXPECT_FALSE(tools.Map());
    EXPECT_TRUE(m_Reports.HasWarning("'ToolsData' not listed under [Global] in pipeline.ini"));
    Pipeline::Shutdown();
    ASSERT_EQ(Initialize("[Global]\nToolsData=none\n" + Project("foo", "Foo")), 0);
    EXPECT_FALSE(tools.Map());
    EXPECT_TRUE(
        m_Reports.HasWarning("PIPELINE -- Failed to map pipeline alias 'DATA', folder '" + Path("proj\\none") + "'"));
}

} // namespace
