#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

using namespace FilePathUtil;

namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>; // a text, and what becomes of it; "none" when it fails

std::string Normalized(std::string name) { return NormalizeAliasPath(name) ? name : "none"; }

std::string Separated(std::string name) {
    NormalizeSeparators(name);
    return name;
}

std::string WithExtension(std::string name, const char* pExt) { return SetExtension(name, pExt) ? name : "none"; }

std::string Split(const std::string& full) {
    std::string alias, path, name, extension;
    const bool isSplit = SplitPath(full.c_str(), &alias, &path, &name, &extension);
    return isSplit ? alias + '|' + path + '|' + name + '|' + extension : "none";
}

std::string Made(const char* pAlias, const char* pPath, const char* pFname, const char* pExt) {
    std::string full = "none";
    MakePath(full, pAlias, pPath, pFname, pExt);
    return full;
}

} // namespace

TEST(FilePathUtil, SplitPath) {
    for (const auto& [full, parts] : Pairs{{"data:art\\x.tga", "DATA:|art\\|x|.tga"},
                                           {"DATA:/art//sub/x.y.tga", "DATA:|art\\sub\\|x.y|.tga"},
                                           {"DATA:", "DATA:|||"},
                                           {"DATA:a.b\\x", "DATA:|a.b\\|x|"},
                                           {"DATA:a\\..\\x.tga", "DATA:||x|.tga"},
                                           {"TOOL:Z:\\home\\x.pvx", "TOOL:|Z:\\home\\|x|.pvx"},
                                           {"", "none"},
                                           {"C:\\x.tga", "none"}})
        EXPECT_EQ(Split(full), parts);
    const std::string limit = "DATA:" + std::string(254, 'x');
    EXPECT_TRUE(SplitPath(limit.c_str(), nullptr, nullptr, nullptr, nullptr));
    const dbNoThrowScope stepOver;
    EXPECT_EQ(Split(limit + "x"), "none");
}

TEST(FilePathUtil, MakePath) {
    EXPECT_EQ(Made("data", "art", "x", "tga"), "DATA:art\\x.tga");
    EXPECT_EQ(Made("DATA:", "\\art\\", "x", ".tga"), "DATA:art\\x.tga");
    EXPECT_EQ(Made("DATA", nullptr, "x", nullptr), "DATA:x");
    EXPECT_EQ(Made("DATA", "a\\..", "x", ""), "DATA:x");
    EXPECT_EQ(Made("DATA", "\\\\server\\share", "x", "tga"), "DATA:\\\\server\\share\\x.tga");
    EXPECT_EQ(Made("DATA", "art", nullptr, nullptr), "DATA:art\\");
    EXPECT_EQ(Made("", "art", "x", "tga"), "none");
    EXPECT_EQ(Made(nullptr, "art", "x", "tga"), "none");
    EXPECT_EQ(Made("DATA", std::string(260, 'x').c_str(), "x", "tga"), "none");
}

TEST(FilePathUtil, Normalizing) {
    for (const auto& [name, normal] : Pairs{{"data:/art\\\\x.TGA", "DATA:art\\x.TGA"},
                                            {"AB:a\\b\\..\\..\\c", "AB:c"},
                                            {"AB:a\\..\\..\\c", "AB:..\\c"},
                                            {"AB:a..b\\...\\c", "AB:a..b\\...\\c"},
                                            {"AB:a\\b\\..", "AB:a\\"},
                                            {"AB:Z:\\..\\x", "AB:Z:\\..\\x"},
                                            {"C:\\x", "none"}})
        EXPECT_EQ(Normalized(name), normal) << name;
    for (const auto& [name, normal] : Pairs{{"a/b\\\\c", "a\\b\\c"},
                                            {"\\a", "a"},
                                            {"//server/share", "\\\\server\\share"},
                                            {"\\\\\\\\a", "\\\\a"},
                                            {"\\", ""},
                                            {"a\\\\\\", "a\\"}})
        EXPECT_EQ(Separated(name), normal) << name;
}

TEST(FilePathUtil, Extensions) {
    EXPECT_EQ(WithExtension("a.b", ""), "a");
    EXPECT_EQ(WithExtension("a", ".tga"), "a.tga");
    EXPECT_EQ(WithExtension("d.x\\a", "tga"), "d.x\\a.tga");
    EXPECT_EQ(WithExtension(std::string(255, 'a'), "tga").size(), 259u);
    EXPECT_EQ(WithExtension(std::string(256, 'a'), "tga"), "none");
    EXPECT_STREQ(GetExtension("a.b.c"), "c");
    EXPECT_STREQ(GetExtension("abc"), "abc");
    EXPECT_TRUE(HasExtension("x.TGA", "tga") && HasExtension("x.TGA", ".tga") && HasExtension("x", ""));
    EXPECT_FALSE(HasExtension("tga", "tga"));
    EXPECT_THROW(HasExtension("x", nullptr), std::runtime_error);
}

TEST(FilePathUtil, CopiedParts) {
    // An empty part is none.
    const struct {
        const char *pName, *pAlias, *pTitle, *pExtension, *pFolder;
    } cases[] = {{"data:a\\b.c.d", "data", "b.c", "d", "data:a\\"},
                 {"DATA:a\\", "DATA", "", "", "DATA:a\\"},
                 {"C:\\x.y\\z", "", "z", "", "C:\\x.y\\"},
                 {"b.", "", "b", "", ""},
                 {"AB:x", "AB", "x", "", ""}};
    for (const auto& [pName, pAlias, pTitle, pExtension, pFolder] : cases) {
        std::string out;
        EXPECT_EQ(HasAlias(pName), *pAlias != '\0') << pName;
        EXPECT_TRUE(CopyAlias(out, pName) == (*pAlias != '\0') && out == pAlias) << pName;
        EXPECT_TRUE(CopyFileTitle(out, pName) == (*pTitle != '\0') && out == pTitle) << pName;
        EXPECT_TRUE(CopyExtension(out, pName) == (*pExtension != '\0') && out == pExtension) << pName;
        EXPECT_TRUE(GetFolder(pName, out, 260) == strlen(pFolder) && out == pFolder) << pName;
    }
    std::string out;
    EXPECT_EQ(GetFolder("DATA:a\\b.c", out, 6), 0u);
    EXPECT_STREQ(GetFileName("DATA:b.c"), "b.c");
    EXPECT_STREQ(GetFileName("a/"), "");
}

TEST(FilePathUtil, Replacing) {
    std::string path = "DATA:a\\b.c";
    EXPECT_TRUE(SetFileName(path, "x.tga"));
    EXPECT_THROW(SetFileName(path, "y\\x"), std::runtime_error);
    EXPECT_TRUE(MakeRelative(path, "data:A"));
    EXPECT_EQ(path, "x.tga");
    EXPECT_FALSE(MakeRelative(path, "data:A"));
    path = "art\\ART\\x";
    EXPECT_TRUE(ReplaceInPath(path, "Art\\", "b\\"));
    EXPECT_FALSE(ReplaceInPath(path, "none", "b"));
    EXPECT_FALSE(ReplaceInPath(path, "b", std::string(200, 'x').c_str()));
    EXPECT_EQ(path, "b\\b\\x");
}
