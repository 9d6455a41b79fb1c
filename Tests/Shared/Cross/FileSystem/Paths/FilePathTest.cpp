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
    // The names found, each with a blank behind it.
    static std::string Find(const char* pSpec, bool recurse, FilePath::SEARCH_Type type) {
        const FilePath::FileSet set = FilePath::FindFiles(pSpec, recurse, type);
        std::string names;
        for (uint32_t i = 0; i < set.GetCount(); ++i)
            names += set[i] + std::string(" ");
        return names;
    }

private:
    std::vector<std::pair<std::string, std::string>> m_Added;
};

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
}

TEST_F(FilePathTest, RegistrationIsChecked) {
    m_Folder.Write("a/x", "a");
    ASSERT_TRUE(Mount("DATA", "a", 1));
    const FilePath::SourceID first = FilePath::FindSource("DATA:x", Mode_Read);
    EXPECT_FALSE(FilePath::RemoveSource("DATA", "b"));
    EXPECT_TRUE(FilePath::RemoveSource("data", first));
    EXPECT_FALSE(FilePath::HasAlias("DATA:x"));
    EXPECT_FALSE(FilePath::RemoveSource("DATA", "a"));
    EXPECT_TRUE(ReportCapture::HasWarning("FILESYSTEM -- filepath failed to remove alias, missing alias 'DATA'"));
    ASSERT_TRUE(Mount("DATA", "a", 1));
    EXPECT_NE(FilePath::FindSource("DATA:x", Mode_Read), first) << "the same id again";
    const dbNoThrowScope stepOver;
    const std::tuple<const char*, const char*, int32_t> mistakes[] = {
        {"DATA", "a", 1}, {"C", "HD", 1}, {"C:", "HD", 1}, {"", "HD", 1}, {"DATA", "", 1}, {"DATA", "HD", -1}};
    for (const auto& [pAlias, pId, priority] : mistakes)
        EXPECT_FALSE(FilePath::AddSource(pAlias, pId, priority, std::make_shared<FilePathHDRaw>(false)))
            << pAlias << pId;
    EXPECT_FALSE(FilePath::AddSource("DATA", "HD", 1, nullptr));
}

TEST_F(FilePathTest, MissingAliasesAreLoggedAndEmptyNamesAreNot) {
    for (const std::string name : {"", "NOPE:art\\x"}) {
        std::string full = name;
        EXPECT_EQ(Read(name.c_str()), "none");
        EXPECT_EQ(FilePath::GetType(name.c_str()), FilePath::Type_None);
        EXPECT_EQ(FilePath::FindSource(name.c_str(), Mode_Read), FilePath::SourceID::InvalidID);
        EXPECT_EQ(FilePath::FindFiles(name.c_str(), true, FilePath::SEARCH_Both).GetCount(), 0u);
        EXPECT_FALSE(FilePath::ReplaceFile(name.c_str()));
        EXPECT_FALSE(FilePath::Delete(name.c_str()));
        EXPECT_FALSE(FilePath::GetFullName(full, Mode_Read));
        EXPECT_EQ(m_Reports.GetWarnings().size(), name.empty() ? 0u : 7u);
    }
    EXPECT_EQ(ReportCapture::CountWarnings("FILESYSTEM -- filepath failure, missing alias 'NOPE:art\\x'"), 7u);
    EXPECT_THROW(Read(std::string(261, 'x').c_str()), std::runtime_error);
}

TEST_F(FilePathTest, OpensFromOneSourceAndTellsFromWhich) {
    for (const char* pName : {"b", "a"}) {
        m_Folder.Write(std::string(pName) + "/x", std::string(*pName - 'a', 'x'));
        ASSERT_TRUE(Mount("DATA", pName, 1));
    }
    FilePath::SourceID last;
    EXPECT_TRUE(FilePath::OpenStreamFrom("DATA:x", Mode_Read, last));
    EXPECT_EQ(last, FilePath::FindSource("DATA:x", Mode_Read));
    EXPECT_EQ(FilePath::OpenStream("DATA:x", Mode_Read, last)->GetLength(), 0u);
    EXPECT_EQ(FilePath::OpenStream("DATA:x", Mode_Read, last.GetValue() - 1)->GetLength(), 1u);
    EXPECT_FALSE(FilePath::OpenStream("DATA:x", Mode_Read, last.GetValue() + 1));
    EXPECT_THROW(FilePath::OpenStream("DATA:x", Mode_Read, FilePath::SourceID()), std::runtime_error);
    EXPECT_THROW(FilePath::OpenStreamFrom("DATA:x", Mode_Read, last), std::runtime_error);
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
    std::string name = "data:Art\\x.tga";
    EXPECT_TRUE(FilePath::GetFullName(name, Mode_Read));
    EXPECT_EQ(name, UpperCase(m_Folder.Path("Root")) + "\\Art\\x.tga");
    name = m_Folder.Path("root/ART/x.tga");
    EXPECT_TRUE(FilePath::ToAliasName(name) && FilePath::ToAliasName(name));
    EXPECT_EQ(name, "DATA:ART\\x.tga");
    name = "DATA:New\\file";
    EXPECT_TRUE(FilePath::GetFullName(name, Mode_Write));
    EXPECT_TRUE(m_Folder.Has("Root/New"));
    name = "DATA:none";
    EXPECT_FALSE(FilePath::GetFullName(name, Mode_Read));
    EXPECT_TRUE(ReportCapture::HasWarning("Could not find file [" + name + "]"));
    name = "Z:\\elsewhere\\x";
    EXPECT_FALSE(FilePath::ToAliasName(name));
    EXPECT_TRUE(ReportCapture::HasWarning("Could not convert file [" + name + "]"));
}

TEST_F(FilePathTest, FindsEachFileOnce) {
    for (const char* pName : {"own/b.tga", "own/Sub/c.tga", "shared/B.TGA", "shared/a.tga", "shared/sub/d.tga",
                              "shared/sub/deep/e.tga", "shared/f.dds"})
        m_Folder.Write(pName, "");
    ASSERT_TRUE(Mount("DATA", "shared", 1, Mode_Read));
    ASSERT_TRUE(Mount("DATA", "own", 2));
    using enum FilePath::SEARCH_Type;
    EXPECT_EQ(Find("data:*.tga", true, SEARCH_Files),
              "DATA:b.tga DATA:Sub\\c.tga DATA:a.tga DATA:sub\\d.tga DATA:sub\\deep\\e.tga ");
    EXPECT_EQ(Find("DATA:SUB/*", true, SEARCH_Folders), "DATA:SUB\\deep ");
    EXPECT_EQ(Find("DATA:*", false, SEARCH_Both), "DATA:b.tga DATA:Sub DATA:a.tga DATA:f.dds ");
    EXPECT_EQ(FilePath::GetType("DATA:sub\\C.tga"), FilePath::Type_File);
    EXPECT_EQ(FilePath::GetType("DATA:sub\\"), FilePath::Type_Folder);
    EXPECT_EQ(FilePath::GetType("DATA:sub\\*.tga"), FilePath::Type_File);
    EXPECT_EQ(FilePath::GetType("DATA:*.bmp"), FilePath::Type_None);
    EXPECT_TRUE(FilePath::Delete("DATA:none") && FilePath::Delete("DATA:sub\\C.tga"));
    EXPECT_FALSE(m_Folder.Has("own/Sub/c.tga"));
}

TEST_F(FilePathTest, NamesDontLeaveTheRoot) {
    m_Folder.Write("secret", "x");
    m_Folder.MakeFolder("root");
    const auto pSource = FilePathHD::Create(m_Folder.Path("root").c_str(), Mode_Both);
    const dbNoThrowScope stepOver;
    std::string out;
    for (const char* pName : {"..\\secret", "a\\..\\..\\secret", "\\x", "Z:\\x", "a/x", "..", "a\\..", ""}) {
        EXPECT_FALSE(pSource->Open(pName, Mode_Read) || pSource->Replace(pName)) << pName;
        EXPECT_TRUE(ReportCapture::HasWarning("file " + std::string(pName) + " is missing."));
        EXPECT_FALSE(pSource->GetFullName(out, pName, Mode_Write) || pSource->IsAccessible(pName, Mode_Read)) << pName;
        EXPECT_FALSE(pSource->GetType(pName) != FilePath::Type_None || pSource->Delete(pName)) << pName;
    }
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
    std::string name = "TOOL:" + m_Folder.Path("out.pvx");
    EXPECT_FALSE(Write(("TOOL:" + m_Folder.Path("no/out.pvx")).c_str(), "x"));
    EXPECT_TRUE(Write(name.c_str(), "x"));
    EXPECT_EQ(Read(name.c_str()), "x");
    EXPECT_NE(FilePath::FindSource(name.c_str(), Mode_Both), FilePath::SourceID::InvalidID);
    EXPECT_TRUE(FilePath::GetFullName(name, Mode_Read));
    EXPECT_EQ(name, m_Folder.Path("out.pvx"));
    EXPECT_TRUE(pSource->Rename(name.c_str(), m_Folder.Path("b").c_str()));
    EXPECT_TRUE(FilePath::Delete(("TOOL:" + m_Folder.Path("b")).c_str()));
    EXPECT_FALSE(m_Folder.Has("b"));
}

TEST_F(FilePathTest, AReplacedFileComesFromTheFirstSourceThatWrites) {
    m_Folder.Write("closed/Deep/x", "closed");
    m_Folder.Write("open/Deep/x", "before");
    ASSERT_TRUE(Mount("DATA", "closed", 2, Mode_Read));
    ASSERT_TRUE(Mount("DATA", "open", 1));
    const auto pFile = FilePath::ReplaceFile("DATA:deep\\x");
    EXPECT_STREQ(pFile->GetStream().GetName(), "DATA:deep\\x");
    pFile->GetStream().WriteText("after", false);
    EXPECT_EQ(m_Folder.Read("open/Deep/x"), "before");
    EXPECT_TRUE(pFile->Finish());
    EXPECT_EQ(m_Folder.Read("open/Deep/x"), "after");
    EXPECT_EQ(m_Folder.Read("closed/Deep/x"), "closed");
    EXPECT_TRUE(FilePath::ReplaceFile("DATA:new\\y")->Finish());
    EXPECT_TRUE(m_Folder.Has("open/new/y"));
}
