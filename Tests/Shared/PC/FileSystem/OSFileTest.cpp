#include "Shared/PC/FileSystem/OSFile.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>

namespace {

class OSFileTest : public testing::Test {
protected:
    TempFolder m_Folder;

    // The text of a file as a look-up finds it; "" with the reason in LastError if it can't be opened.
    static std::string Read(const std::string& path) {
        const OSFile::Handle handle = OSFile::Open(path.c_str(), OSFile::Open_Read, true, false);
        if (!handle)
            return "";
        std::string text(64, '\0');
        text.resize(OSFile::Read(handle, text.data(), 64));
        OSFile::Close(handle);
        return text;
    }
    static bool Write(const std::string& path, const std::string& text) {
        const OSFile::Handle handle = OSFile::Open(path.c_str(), OSFile::Open_Write, false, false);
        if (!handle)
            return false;
        OSFile::Write(handle, text.data(), static_cast<uint32_t>(text.size()));
        return OSFile::Close(handle);
    }
};

constexpr uint32_t s_Plain = OSFile::F_ATTRIBUTE_READABLE | OSFile::F_ATTRIBUTE_WRITABLE;

} // namespace

TEST_F(OSFileTest, TranslatesThereAndBack) {
    const struct {
        const char *pPath, *pNative;
    } cases[] = {{"Z:\\", "/"},           {"z:/", "/"},           {"Z:\\a b\\c.x", "/a b/c.x"}, {"Z:/a\\b/", "/a/b"},
                 {"Z:\\a\\.\\b", "/a/b"}, {"Z:\\a\\..\\b", "/b"}, {"Z:\\..\\..\\a", "/a"},      {"\\a", "/a"},
                 {"Z:\\a\\\\b", "/a/b"}};
    for (const auto& [pPath, pNative] : cases)
        EXPECT_EQ(OSFile::ToNative(pPath), pNative) << pPath;
    for (const char* pPath : {"C:\\x", "\\\\server\\share\\x", "TOOL:Z:\\x", "Z:\\a:b", "TOOL:x"})
        EXPECT_EQ(OSFile::ToNative(pPath), "") << pPath;
    EXPECT_EQ(OSFile::FromNative("/home/me/x.pvx"), "Z:\\home\\me\\x.pvx");
    EXPECT_EQ(OSFile::FromNative("/"), "Z:\\");
    EXPECT_EQ(OSFile::FromNative("/a\\b"), "");
    EXPECT_EQ(OSFile::FromNative("/a:b"), "");
}

TEST_F(OSFileTest, RelativePathsStartAtTheCurrentFolder) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(m_Folder.Native());
    EXPECT_EQ(OSFile::GetCurrentFolder(), m_Folder.Path() + "\\");
    EXPECT_EQ(OSFile::ToNative("Z:sub\\x"), m_Folder.Native("sub/x"));
    EXPECT_EQ(OSFile::ToNative(""), "");
    EXPECT_EQ(OSFile::FromNative("x/y"), m_Folder.Path("x/y"));
    m_Folder.Write("here", "text");
    EXPECT_EQ(Read("HERE"), "text");
    EXPECT_EQ(OSFile::List("H*"), std::vector<std::string>{"here"});
    std::filesystem::current_path(before);
}

TEST_F(OSFileTest, NewNamesTakeTheAskedSpellingInsideTheFoldersOwn) {
    m_Folder.MakeFolder("Art");
    EXPECT_TRUE(Write(m_Folder.Path("ART/New.Txt"), "1"));
    EXPECT_EQ(m_Folder.Read("Art/New.Txt"), "1");
    EXPECT_TRUE(Write(m_Folder.Path("art/NEW.TXT"), "2"));
    EXPECT_EQ(m_Folder.Read("Art/New.Txt"), "2");
    EXPECT_TRUE(OSFile::MakeFolders(m_Folder.Path("aRT/Sub/Deep/file.txt").c_str()));
    EXPECT_TRUE(m_Folder.Has("Art/Sub/Deep"));
    EXPECT_FALSE(m_Folder.Has("Art/Sub/Deep/file.txt"));
    std::string slashes = m_Folder.Path("Art/Other/Deep/file.txt");
    std::ranges::replace(slashes, '\\', '/');
    EXPECT_TRUE(OSFile::MakeFolders(slashes.c_str()));
    EXPECT_TRUE(m_Folder.Has("Art/Other/Deep"));
    EXPECT_FALSE(OSFile::MakeFolders(m_Folder.Path("Art/New.Txt/x/y").c_str()));
    EXPECT_FALSE(OSFile::MakeFolder("TOOL:Z:\\somewhere"));
    EXPECT_TRUE(OSFile::MakeFolder(m_Folder.Path("ART").c_str()));
    EXPECT_FALSE(m_Folder.Has("ART"));
}

TEST_F(OSFileTest, OpenModes) {
    const std::string path = m_Folder.Path("file");
    EXPECT_TRUE(Write(path, "12345"));
    EXPECT_TRUE(Write(path, "678")); // emptied first
    const OSFile::Handle handle = OSFile::Open(path.c_str(), OSFile::Open_ReadWrite, false, true);
    EXPECT_EQ(OSFile::GetPos(handle), 3u);
    EXPECT_EQ(OSFile::Write(handle, "9", 1), 1u);
    EXPECT_TRUE(OSFile::Seek(handle, 0));
    char text[8] = {};
    EXPECT_EQ(OSFile::Read(handle, text, 8), 4u);
    EXPECT_STREQ(text, "6789");
    EXPECT_EQ(OSFile::GetSize(handle), 4u);
    EXPECT_TRUE(OSFile::Flush(handle));
    // One writer at a time; readers don't mind.
    EXPECT_FALSE(OSFile::Open(path.c_str(), OSFile::Open_Write, true, false));
    EXPECT_EQ(OSFile::LastError(), EBUSY);
    EXPECT_TRUE(OSFile::WasInUse());
    EXPECT_EQ(Read(path), "6789");
    const OSFile::Handle other = OSFile::Duplicate(handle);
    EXPECT_TRUE(OSFile::Close(handle));
    EXPECT_FALSE(OSFile::Open(path.c_str(), OSFile::Open_Write, true, false)) << "one of the two is open";
    EXPECT_TRUE(OSFile::Close(other));
    EXPECT_TRUE(Write(path, "0"));
}

TEST_F(OSFileTest, OpensNeitherFoldersNorWhatWouldWait) {
    EXPECT_FALSE(OSFile::Open(m_Folder.Path().c_str(), OSFile::Open_Read, true, false));
    EXPECT_EQ(OSFile::LastError(), EISDIR);
    EXPECT_FALSE(OSFile::Open(m_Folder.Path().c_str(), OSFile::Open_Write, true, false));
    EXPECT_EQ(OSFile::LastError(), EISDIR);
    ASSERT_EQ(mkfifo(m_Folder.Native("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(OSFile::Open(m_Folder.Path("pipe").c_str(), OSFile::Open_Read, true, false));
    EXPECT_FALSE(OSFile::Open(m_Folder.Path("pipe").c_str(), OSFile::Open_Write, true, false));
}

TEST_F(OSFileTest, AttributesAndTheReadOnlyOne) {
    m_Folder.Write("Sub/File", "x");
    const std::string path = m_Folder.Path("sub/file");
    EXPECT_EQ(OSFile::FileAttr(path.c_str()), OSFile::F_ATTRIBUTE_FILE | s_Plain);
    EXPECT_EQ(OSFile::FileAttr(m_Folder.Path("SUB").c_str()), OSFile::F_ATTRIBUTE_DIRECTORY | s_Plain);
    EXPECT_EQ(OSFile::FileAttr(m_Folder.Path("none").c_str()), 0u);
    EXPECT_TRUE(OSFile::SetWritable(path.c_str(), false));
    EXPECT_EQ(OSFile::FileAttr(path.c_str()), OSFile::F_ATTRIBUTE_FILE | OSFile::F_ATTRIBUTE_READABLE);
    EXPECT_FALSE(Write(path, "y"));
    EXPECT_EQ(OSFile::LastErrorText(), "Permission denied");
    EXPECT_FALSE(OSFile::Delete(path.c_str()));
    EXPECT_EQ(m_Folder.Read("Sub/File"), "x");
    EXPECT_TRUE(OSFile::SetWritable(path.c_str(), true));
    EXPECT_TRUE(OSFile::Delete(path.c_str()));
    EXPECT_FALSE(OSFile::Delete(path.c_str()));
    EXPECT_FALSE(OSFile::Delete(m_Folder.Path("SUB").c_str()));
}

TEST_F(OSFileTest, RenamesAlsoToAnotherSpelling) {
    m_Folder.Write("One", "1");
    m_Folder.Write("Two", "2");
    EXPECT_TRUE(OSFile::Rename(m_Folder.Path("ONE").c_str(), m_Folder.Path("one").c_str()));
    EXPECT_TRUE(m_Folder.Has("one"));
    EXPECT_FALSE(m_Folder.Has("One"));
    EXPECT_TRUE(OSFile::Rename(m_Folder.Path("one").c_str(), m_Folder.Path("TWO").c_str()));
    EXPECT_EQ(m_Folder.Read("Two"), "1");
    EXPECT_FALSE(OSFile::Rename(m_Folder.Path("one").c_str(), m_Folder.Path("three").c_str()));
}

TEST_F(OSFileTest, ListsInOneOrder) {
    for (const char* pName : {"b.tga", "A.TGA", "a.tga", "c", "Sub/x.tga"})
        m_Folder.Write(pName, "");
    std::filesystem::create_symlink(m_Folder.Native(), m_Folder.Native("Sub/loop.tga"));
    using Names = std::vector<std::string>;
    EXPECT_EQ(OSFile::List(m_Folder.Path("*.tga").c_str()), (Names{"A.TGA", "a.tga", "b.tga"}));
    EXPECT_EQ(OSFile::List(m_Folder.Path("*").c_str()), (Names{"A.TGA", "a.tga", "b.tga", "c", "Sub"}));
    EXPECT_EQ(OSFile::List(m_Folder.Path("SUB/*").c_str()), Names{"x.tga"});
    EXPECT_EQ(OSFile::List(m_Folder.Path("none/*").c_str()), Names{});
    EXPECT_TRUE(OSFile::Exists(m_Folder.Path("?").c_str()));
    EXPECT_FALSE(OSFile::Exists(m_Folder.Path("??").c_str()));
    EXPECT_TRUE(OSFile::Exists(m_Folder.Path("C").c_str()));
}
