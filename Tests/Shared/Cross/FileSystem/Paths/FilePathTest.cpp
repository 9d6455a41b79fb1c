#include "Shared/Cross/FileSystem/Paths/FilePath.h"

#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

namespace {

using enum ByteStream::Mode;

class FilePathTest : public testing::Test {
protected:
    TempFolder m_Folder;
    ReportCapture m_Reports;

    ~FilePathTest() override {
        for (const auto& [alias, id] : m_Added)
            FilePath::RemoveSource(alias.c_str(), id.c_str());
    }
    // A folder below the temporary one, mounted under the name that it has.
    bool Mount(const char* pAlias, const char* pFolder, int32_t priority, FilePath::Mode mode = Mode_Both) {
        return Mount(pAlias, pFolder, priority, FilePathHD::Create(m_Folder.Path(pFolder).c_str(), mode));
    }
    bool Mount(const char* pAlias, const char* pId, int32_t priority, std::shared_ptr<FilePath::Source> pSource) {
        const bool added = FilePath::AddSource(pAlias, pId, priority, std::move(pSource));
        if (added)
            m_Added.emplace_back(pAlias, pId);
        return added;
    }
    static std::string Read(const char* pName) {
        const auto pStream = FilePath::OpenStream(pName, Mode_Read);
        if (!pStream)
            return "none";
        std::string text(pStream->GetLength(), '\0');
        pStream->Read(text.data(), pStream->GetLength());
        return text;
    }
    static bool Write(const char* pName, const char* pText) {
        const auto pStream = FilePath::OpenStream(pName, Mode_Write);
        return pStream && pStream->WriteText(pText, false) && pStream->Flush();
    }
    static std::vector<std::string> Names(const FilePath::FileSet& set) {
        std::vector<std::string> names;
        for (uint32_t i = 0; i < set.GetCount(); ++i)
            names.emplace_back(set[i]);
        return names;
    }

private:
    std::vector<std::pair<std::string, std::string>> m_Added;
};

using NameList = std::vector<std::string>;

} // namespace

TEST_F(FilePathTest, TheHighestPriorityIsAskedFirst) {
    for (const char* pName : {"low", "high", "late"})
        m_Folder.Write(std::string(pName) + "/x.txt", pName);
    m_Folder.Write("low/only.txt", "only");
    EXPECT_TRUE(Mount("DATA", "high", 5));
    EXPECT_TRUE(Mount("data", "low", 1));
    EXPECT_EQ(Read("DATA:x.txt"), "high");
    EXPECT_EQ(Read("DATA:only.txt"), "only");
    EXPECT_TRUE(FilePath::RemoveSource("DATA", "high"));
    EXPECT_TRUE(Mount("DATA", "late", 1));
    EXPECT_EQ(Read("DATA:x.txt"), "late");
}

TEST_F(FilePathTest, OneFileHasManySpellings) {
    m_Folder.Write("Root/Art/X.tga", "x");
    ASSERT_TRUE(Mount("DATA", "root", 0)); // which is no exact spelling either
    for (const char* pName : {"data:art\\x.tga", "DATA:art/x.tga", "DATA:\\art\\x.tga", "Data:ART\\\\X.TGA"})
        EXPECT_EQ(Read(pName), "x") << pName;
    EXPECT_FALSE(m_Folder.Has("root"));
    EXPECT_EQ(std::string(FilePath::OpenStream("data:art/x.tga", Mode_Read)->GetName()), "data:art/x.tga");
}

TEST_F(FilePathTest, RegistrationIsChecked) {
    const auto pSource = std::make_shared<FilePathHDRaw>(false);
    EXPECT_TRUE(Mount("TOOL", "HD", 99, pSource));
    EXPECT_TRUE(FilePath::HasAlias("tool:x"));
    const dbNoThrowScope stepOver;
    const std::tuple<const char*, const char*, int32_t> mistakes[] = {
        {"TOOL", "HD", 1}, {"C", "HD", 1}, {"C:", "HD", 1}, {"", "HD", 1}, {"DATA", "", 1}, {"DATA", "HD", -1}};
    for (const auto& [pAlias, pId, priority] : mistakes)
        EXPECT_FALSE(FilePath::AddSource(pAlias, pId, priority, pSource)) << pAlias << pId;
    EXPECT_FALSE(FilePath::AddSource("DATA", "HD", 1, nullptr));
    for (const char* pName : {"DATA:x", "x"})
        EXPECT_FALSE(FilePath::HasAlias(pName));
}

TEST_F(FilePathTest, RemovingTells) {
    m_Folder.Write("a/x", "a");
    ASSERT_TRUE(Mount("DATA", "a", 1));
    const FilePath::SourceID first = FilePath::FindSource("DATA:x", Mode_Read);
    EXPECT_NE(first, FilePath::SourceID::InvalidID);
    EXPECT_FALSE(FilePath::RemoveSource("DATA", "b"));
    EXPECT_TRUE(FilePath::RemoveSource("data", first));
    EXPECT_FALSE(FilePath::HasAlias("DATA:x"));
    EXPECT_FALSE(FilePath::RemoveSource("DATA", "a"));
    EXPECT_TRUE(ReportCapture::HasWarning("FILESYSTEM -- filepath failed to remove alias, missing alias 'DATA'"));
    ASSERT_TRUE(Mount("DATA", "a", 1));
    EXPECT_NE(FilePath::FindSource("DATA:x", Mode_Read), first);
}

TEST_F(FilePathTest, MissingAliasesAreLoggedAndEmptyNamesAreNot) {
    EXPECT_EQ(Read("NOPE:art\\x"), "none");
    EXPECT_TRUE(ReportCapture::HasWarning("FILESYSTEM -- filepath failure, missing alias 'NOPE:art\\x'"));
    EXPECT_EQ(FilePath::GetType("NOPE:y"), FilePath::Type_None);
    EXPECT_FALSE(FilePath::Delete("C:\\y"));
    EXPECT_EQ(FilePath::FindFiles("NOPE:z", true, FilePath::SEARCH_Both).GetCount(), 0u);
    EXPECT_EQ(ReportCapture::CountWarnings("missing alias"), 4u);
    ReportCapture::Clear();
    std::string name;
    EXPECT_EQ(Read(""), "none");
    EXPECT_EQ(FilePath::FindSource("", Mode_Read), FilePath::SourceID::InvalidID);
    EXPECT_FALSE(FilePath::Delete(""));
    EXPECT_FALSE(FilePath::GetFullName(name, Mode_Read));
    EXPECT_TRUE(m_Reports.GetWarnings().empty());
    EXPECT_THROW(Read(std::string(261, 'x').c_str()), std::runtime_error);
}

TEST_F(FilePathTest, OpensFromOneSourceAndTellsFromWhich) {
    m_Folder.Write("a/x", "a");
    m_Folder.Write("b/x", "b");
    ASSERT_TRUE(Mount("DATA", "a", 2));
    ASSERT_TRUE(Mount("DATA", "b", 1));
    FilePath::SourceID from;
    EXPECT_TRUE(FilePath::OpenStreamFrom("DATA:x", Mode_Read, from));
    EXPECT_EQ(from, FilePath::FindSource("DATA:x", Mode_Read));
    const FilePath::SourceID second(from.GetValue() + 1);
    char text = 0;
    FilePath::OpenStream("DATA:x", Mode_Read, second)->Read(&text, 1);
    EXPECT_EQ(text, 'b');
    EXPECT_FALSE(FilePath::OpenStream("DATA:x", Mode_Read, FilePath::SourceID(second.GetValue() + 1)));
    EXPECT_THROW(FilePath::OpenStream("DATA:x", Mode_Read, FilePath::SourceID()), std::runtime_error);
    EXPECT_THROW(FilePath::OpenStreamFrom("DATA:x", Mode_Read, from), std::runtime_error);
    EXPECT_THROW(FilePath::OpenStream("DATA:x", Mode_None), std::runtime_error);
}

TEST_F(FilePathTest, WritingPassesReadOnlySourcesBy) {
    m_Folder.Write("shared/x", "old");
    ASSERT_TRUE(Mount("DATA", "shared", 9, Mode_Read));
    EXPECT_FALSE(FilePath::OpenStream("DATA:x", Mode_Write));
    EXPECT_FALSE(FilePath::Delete("DATA:x"));
    ASSERT_TRUE(Mount("DATA", "Own", 1, Mode_Both));
    EXPECT_TRUE(Write("DATA:Sub\\x", "new"));
    EXPECT_EQ(m_Folder.Read("Own/Sub/x"), "new"); // in the spelling that was given
    EXPECT_TRUE(Write("DATA:x", "new"));
    EXPECT_EQ(Read("DATA:x"), "old");
    EXPECT_FALSE(ReportCapture::HasWarning("FILESYSTEM"));
}

TEST_F(FilePathTest, FullAndAliasNames) {
    m_Folder.Write("Root/Art/x.tga", "x");
    ASSERT_TRUE(Mount("DATA", "Root", 1));
    const std::string root = UpperCase(m_Folder.Path("Root")) + "\\";
    std::string name = "data:Art\\x.tga";
    EXPECT_TRUE(FilePath::GetFullName(name, Mode_Read));
    EXPECT_EQ(name, root + "Art\\x.tga");
    name = m_Folder.Path("root/ART/x.tga");
    EXPECT_TRUE(FilePath::ToAliasName(name));
    EXPECT_EQ(name, "DATA:ART\\x.tga");
    EXPECT_TRUE(FilePath::ToAliasName(name));
    EXPECT_EQ(name, "DATA:ART\\x.tga");

    name = "DATA:none";
    EXPECT_FALSE(FilePath::GetFullName(name, Mode_Read));
    EXPECT_EQ(name, "DATA:none");
    EXPECT_TRUE(ReportCapture::HasWarning("Could not find file [DATA:none]"));
    name = "DATA:New\\file";
    EXPECT_TRUE(FilePath::GetFullName(name, Mode_Write));
    EXPECT_TRUE(m_Folder.Has("Root/New"));
    name = "Z:\\elsewhere\\x";
    EXPECT_FALSE(FilePath::ToAliasName(name));
    EXPECT_TRUE(ReportCapture::HasWarning("Could not convert file [Z:\\elsewhere\\x]"));
}

TEST_F(FilePathTest, TypesAndDeleting) {
    m_Folder.Write("Root/Art/x.tga", "x");
    ASSERT_TRUE(Mount("DATA", "Root", 1));
    EXPECT_EQ(FilePath::GetType("DATA:art\\x.tga"), FilePath::Type_File);
    EXPECT_EQ(FilePath::GetType("DATA:art"), FilePath::Type_Folder);
    EXPECT_EQ(FilePath::GetType("DATA:art\\"), FilePath::Type_Folder);
    EXPECT_EQ(FilePath::GetType("DATA:art\\*.tga"), FilePath::Type_File);
    EXPECT_EQ(FilePath::GetType("DATA:a*"), FilePath::Type_Folder);
    EXPECT_EQ(FilePath::GetType("DATA:*.dds"), FilePath::Type_None);
    EXPECT_TRUE(FilePath::Delete("DATA:none"));
    EXPECT_TRUE(FilePath::Delete("DATA:art\\X.tga"));
    EXPECT_FALSE(m_Folder.Has("Root/Art/x.tga"));
}

TEST_F(FilePathTest, FindsEachFileOnce) {
    for (const char* pName : {"own/b.tga", "own/Sub/c.tga", "shared/B.TGA", "shared/a.tga", "shared/sub/d.tga",
                              "shared/sub/deep/e.tga", "shared/f.dds"})
        m_Folder.Write(pName, "");
    ASSERT_TRUE(Mount("DATA", "shared", 1, Mode_Read));
    ASSERT_TRUE(Mount("DATA", "own", 2));
    using enum FilePath::SEARCH_Type;
    EXPECT_EQ(Names(FilePath::FindFiles("data:*.tga", false, SEARCH_Files)), (NameList{"DATA:b.tga", "DATA:a.tga"}));
    EXPECT_EQ(Names(FilePath::FindFiles("data:*.tga", true, SEARCH_Files)),
              (NameList{"DATA:b.tga", "DATA:Sub\\c.tga", "DATA:a.tga", "DATA:sub\\d.tga", "DATA:sub\\deep\\e.tga"}));
    EXPECT_EQ(Names(FilePath::FindFiles("DATA:SUB/*", true, SEARCH_Folders)), NameList{"DATA:SUB\\deep"});
    EXPECT_EQ(Names(FilePath::FindFiles("DATA:*", false, SEARCH_Both)),
              (NameList{"DATA:b.tga", "DATA:Sub", "DATA:a.tga", "DATA:f.dds"}));
    EXPECT_EQ(FilePath::FindFiles("DATA:none\\*", true, SEARCH_Both).GetCount(), 0u);
}

TEST_F(FilePathTest, ALinkToAboveDoesNotMakeASearchEndless) {
    m_Folder.Write("root/a/b/x.tga", "");
    std::filesystem::create_directory_symlink(m_Folder.Native("root"), m_Folder.Native("root/a/b/again"));
    std::filesystem::create_directory_symlink(m_Folder.Native("root"), m_Folder.Native("root/a/again"));
    ASSERT_TRUE(Mount("DATA", "root", 1));
    EXPECT_EQ(FilePath::FindFiles("DATA:*.tga", true, FilePath::SEARCH_Files).GetCount(), 1u);
}

TEST(FileSet, CopiesAreShared) {
    FilePath::FileSet set("DATA:");
    set.Add("a");
    FilePath::FileSet copy = set;
    set.Add("b");
    set.Add("A");
    set.Add("x\\..\\b");
    EXPECT_EQ(set.GetCount(), 2u);
    EXPECT_EQ(copy.GetCount(), 1u);
    EXPECT_STREQ(copy[0], "DATA:a");
    const dbNoThrowScope stepOver;
    EXPECT_STREQ(copy[2], "");
}

TEST_F(FilePathTest, NamesDontLeaveTheRoot) {
    m_Folder.Write("secret", "x");
    m_Folder.Write("root/in", "x");
    const auto pSource = FilePathHD::Create(m_Folder.Path("root").c_str(), Mode_Both);
    ASSERT_TRUE(Mount("DATA", "root", 1, pSource));
    const dbNoThrowScope stepOver;
    std::string out;
    for (const char* pName : {"..\\secret", "a\\..\\..\\secret", "\\x", "Z:\\x", "a/x", "..", "a\\..", ""}) {
        EXPECT_FALSE(pSource->Open(pName, Mode_Read)) << pName;
        EXPECT_TRUE(ReportCapture::HasWarning("file " + std::string(pName) + " is missing."));
    }
    EXPECT_FALSE(pSource->GetFullName(out, "..\\secret", Mode_Write));
    EXPECT_FALSE(pSource->IsAccessible("..\\secret", Mode_Read));
    EXPECT_EQ(pSource->GetType("..\\secret"), FilePath::Type_None);
    EXPECT_FALSE(pSource->Delete("..\\secret"));
    EXPECT_EQ(Read("DATA:..\\secret"), "none");
    EXPECT_FALSE(pSource->Open(nullptr, Mode_Read));
}

TEST_F(FilePathTest, RootsAreCheckedAndMade) {
    EXPECT_FALSE(FilePathHD::Create(m_Folder.Path("none").c_str(), Mode_Read));
    EXPECT_TRUE(ReportCapture::HasWarning("FILESYSTEM -- filepath failure, path does not exist '" +
                                          m_Folder.Path("none") + "\\'"));
    EXPECT_TRUE(FilePathHD::Create(m_Folder.Path("New/Deep").c_str(), Mode_Write));
    EXPECT_TRUE(m_Folder.Has("New/Deep"));
    m_Folder.Write("file", "");
    EXPECT_FALSE(FilePathHD::Create(m_Folder.Path("file/x").c_str(), Mode_Both));
    EXPECT_TRUE(ReportCapture::HasWarning("FILESYSTEM -- filepath failure, failed to create path '"));
    const dbNoThrowScope stepOver;
    EXPECT_FALSE(FilePathHD::Create("Z:/x", Mode_Both));
    EXPECT_FALSE(FilePathHD::Create(std::string(260, 'x').c_str(), Mode_Both));
    EXPECT_FALSE(FilePathHD::Create("Z:\\", Mode_None));
}

TEST_F(FilePathTest, TheRawSourceTakesFullPaths) {
    const auto pSource = std::make_shared<FilePathHDRaw>(false);
    ASSERT_TRUE(Mount("TOOL", "HD", 99, pSource));
    const std::string name = "TOOL:" + m_Folder.Path("out.pvx");
    EXPECT_TRUE(Write(name.c_str(), "x"));
    EXPECT_EQ(m_Folder.Read("out.pvx"), "x");
    EXPECT_EQ(FilePath::GetType(name.c_str()), FilePath::Type_File);
    EXPECT_NE(FilePath::FindSource(name.c_str(), Mode_Both), FilePath::SourceID::InvalidID);
    std::string full = name;
    EXPECT_TRUE(FilePath::GetFullName(full, Mode_Read));
    EXPECT_EQ(full, m_Folder.Path("out.pvx"));
    EXPECT_FALSE(FilePath::OpenStream(("TOOL:" + m_Folder.Path("no/out.pvx")).c_str(), Mode_Write));
    EXPECT_TRUE(pSource->Rename(m_Folder.Path("out.pvx").c_str(), m_Folder.Path("b").c_str()));
    EXPECT_TRUE(FilePath::Delete(("TOOL:" + m_Folder.Path("b")).c_str()));
    EXPECT_FALSE(m_Folder.Has("b"));
}

TEST_F(FilePathTest, AReplacedFileComesFromTheFirstSourceThatWrites) {
    m_Folder.Write("closed/Deep/x", "closed");
    m_Folder.Write("open/Deep/x", "before");
    ASSERT_TRUE(Mount("DATA", "closed", 2, Mode_Read));
    ASSERT_TRUE(Mount("DATA", "open", 1));
    const auto replace = [](const char* pName, bool finishes) {
        const auto pFile = FilePath::ReplaceFile(pName);
        return pFile && std::string(pFile->GetStream().GetName()) == pName &&
               pFile->GetStream().WriteText("after", false) && (!finishes || pFile->Finish());
    };
    EXPECT_TRUE(replace("DATA:deep\\x", false));
    EXPECT_EQ(m_Folder.Read("open/Deep/x"), "before");
    EXPECT_TRUE(replace("DATA:deep\\x", true));
    EXPECT_EQ(m_Folder.Read("open/Deep/x"), "after");
    EXPECT_TRUE(replace("DATA:new\\y", true));
    EXPECT_EQ(m_Folder.Read("open/new/y"), "after");
    EXPECT_EQ(m_Folder.Read("closed/Deep/x"), "closed");
    EXPECT_FALSE(FilePath::ReplaceFile(""));
    EXPECT_FALSE(FilePath::ReplaceFile("NONE:x"));
    const dbNoThrowScope stepOver;
    EXPECT_FALSE(FilePath::ReplaceFile("DATA:..\\x"));
}

TEST_F(FilePathTest, ListenersHearOfEachOpen) {
    struct Listener : FilePath::OpenListener {
        void OnOpen(const char* pPath, const char* pAlias, const char* pSourceId) override {
            heard.push_back(std::string(pPath) + " " + pAlias + " " + pSourceId);
        }
        NameList heard;
    } listener;
    m_Folder.Write("a/x", "a");
    ASSERT_TRUE(Mount("DATA", "a", 2));
    FilePath::AddOpenListener(listener);
    Read("data:x");
    Read("data:none");
    FilePath::RemoveOpenListener(listener);
    Read("data:x");
    EXPECT_EQ(listener.heard, NameList{"data:x DATA a"});
}
