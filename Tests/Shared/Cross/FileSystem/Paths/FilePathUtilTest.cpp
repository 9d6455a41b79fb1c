#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gtest/gtest.h>

using namespace FilePathUtil;

namespace {

std::string Normalized(std::string name) { return NormalizeAliasPath(name) ? name : "none"; }

std::string Separated(std::string name) {
    NormalizeSeparators(name);
    return name;
}

std::string WithExtension(std::string name, const char* pExt) { return SetExtension(name, pExt) ? name : "none"; }

} // namespace

TEST(FilePathUtil, SplitPath) {
    const struct {
        const char *pFull, *pAlias, *pPath, *pFname, *pExt;
    } cases[] = {
        {"data:art\\x.tga", "DATA:", "art\\", "x", ".tga"},
        {"DATA:/art//sub/x.y.tga", "DATA:", "art\\sub\\", "x.y", ".tga"},
        {"DATA:x", "DATA:", "", "x", ""},
        {"DATA:", "DATA:", "", "", ""},
        {"DATA:art\\", "DATA:", "art\\", "", ""},
        {"DATA:a.b\\x", "DATA:", "a.b\\", "x", ""},
        {"DATA:a\\..\\x.tga", "DATA:", "", "x", ".tga"},
        {"TOOL:Z:\\home\\x.pvx", "TOOL:", "Z:\\home\\", "x", ".pvx"},
    };
    for (const auto& [pFull, pAlias, pPath, pFname, pExt] : cases) {
        std::string alias, path, fname, ext;
        EXPECT_TRUE(SplitPath(pFull, &alias, &path, &fname, &ext)) << pFull;
        EXPECT_EQ(alias, pAlias);
        EXPECT_EQ(path, pPath);
        EXPECT_EQ(fname, pFname);
        EXPECT_EQ(ext, pExt);
        // And back again.
        std::string full;
        EXPECT_TRUE(MakePath(full, pAlias, pPath, pFname, pExt));
        EXPECT_EQ(full, Normalized(pFull));
    }
    EXPECT_TRUE(SplitPath("DATA:x.y", nullptr, nullptr, nullptr, nullptr));
    for (const char* pFull : {"", "x.tga", "C:\\x.tga", "art\\x.tga"})
        EXPECT_FALSE(SplitPath(pFull, nullptr, nullptr, nullptr, nullptr)) << pFull;
    const std::string limit = "DATA:" + std::string(254, 'x');
    EXPECT_TRUE(SplitPath(limit.c_str(), nullptr, nullptr, nullptr, nullptr));
    const dbNoThrowScope stepOver;
    EXPECT_FALSE(SplitPath((limit + "x").c_str(), nullptr, nullptr, nullptr, nullptr));
}

TEST(FilePathUtil, MakePath) {
    const struct {
        const char *pAlias, *pPath, *pFname, *pExt, *pFull;
    } cases[] = {{"data", "art", "x", "tga", "DATA:art\\x.tga"},
                 {"DATA:", "\\art\\", "x", ".tga", "DATA:art\\x.tga"},
                 {"DATA", "/art/sub/", "x", "", "DATA:art\\sub\\x"},
                 {"DATA", nullptr, "x", nullptr, "DATA:x"},
                 {"DATA", "a\\..", "x", "tga", "DATA:x.tga"},
                 {"DATA", "\\\\server\\share", "x", "tga", "DATA:\\\\server\\share\\x.tga"},
                 {"DATA", "art", nullptr, nullptr, "DATA:art\\"}};
    for (const auto& [pAlias, pPath, pFname, pExt, pFull] : cases) {
        std::string full;
        EXPECT_TRUE(MakePath(full, pAlias, pPath, pFname, pExt));
        EXPECT_EQ(full, pFull);
    }
    std::string full = "kept";
    EXPECT_FALSE(MakePath(full, "", "art", "x", "tga"));
    EXPECT_FALSE(MakePath(full, nullptr, "art", "x", "tga"));
    EXPECT_FALSE(MakePath(full, "DATA", std::string(260, 'x').c_str(), "x", "tga"));
    EXPECT_EQ(full, "kept");
}

TEST(FilePathUtil, Normalizing) {
    const struct {
        const char *pName, *pNormal;
    } aliases[] = {{"data:/art\\\\x.TGA", "DATA:art\\x.TGA"},
                   {"AB:a\\b\\..\\..\\c", "AB:c"},
                   {"AB:..\\c", "AB:..\\c"},
                   {"AB:a\\..\\..\\c", "AB:..\\c"},
                   {"AB:a..b\\...\\c", "AB:a..b\\...\\c"},
                   {"AB:a\\b\\..", "AB:a\\"},
                   {"AB:Z:\\..\\x", "AB:Z:\\..\\x"},
                   {"C:\\x", "none"},
                   {"x", "none"}};
    for (const auto& [pName, pNormal] : aliases)
        EXPECT_EQ(Normalized(pName), pNormal) << pName;
    const struct {
        const char *pName, *pNormal;
    } separators[] = {{"a/b\\\\c", "a\\b\\c"},
                      {"\\a", "a"},
                      {"//server/share", "\\\\server\\share"},
                      {"", ""},
                      {"\\\\\\\\a", "\\\\a"},
                      {"\\", ""},
                      {"a\\\\\\", "a\\"}};
    for (const auto& [pName, pNormal] : separators)
        EXPECT_EQ(Separated(pName), pNormal) << pName;
}

TEST(FilePathUtil, Extensions) {
    EXPECT_EQ(WithExtension("a.b", ""), "a");
    EXPECT_EQ(WithExtension("a", ".tga"), "a.tga");
    EXPECT_EQ(WithExtension("a.b", "tga"), "a.tga");
    EXPECT_EQ(WithExtension("d.x\\a", "tga"), "d.x\\a.tga");
    EXPECT_EQ(WithExtension(std::string(255, 'a'), "tga").size(), 259u);
    EXPECT_EQ(WithExtension(std::string(256, 'a'), "tga"), "none");
    EXPECT_STREQ(GetExtension("a.b.c"), "c");
    EXPECT_STREQ(GetExtension("abc"), "abc");
    EXPECT_STREQ(GetExtension("a."), "");
    EXPECT_TRUE(HasExtension("x.TGA", "tga"));
    EXPECT_TRUE(HasExtension("x.TGA", ".tga"));
    EXPECT_TRUE(HasExtension("x", ""));
    EXPECT_FALSE(HasExtension("tga", "tga"));
    EXPECT_THROW(HasExtension("x", nullptr), std::runtime_error);
    std::string out;
    EXPECT_TRUE(CopyExtension(out, "a.b"));
    EXPECT_EQ(out, "b");
    EXPECT_FALSE(CopyExtension(out, "a"));
}

TEST(FilePathUtil, OtherParts) {
    EXPECT_FALSE(HasAlias("C:\\x"));
    EXPECT_TRUE(HasAlias("AB:x"));
    EXPECT_FALSE(HasAlias("x"));
    EXPECT_STREQ(GetFileName("DATA:a\\b.c"), "b.c");
    EXPECT_STREQ(GetFileName("DATA:b.c"), "b.c");
    EXPECT_STREQ(GetFileName("a/"), "");
    std::string out;
    EXPECT_TRUE(CopyFileTitle(out, "DATA:a\\b.c.d"));
    EXPECT_EQ(out, "b.c");
    EXPECT_FALSE(CopyFileTitle(out, "DATA:a\\"));
    EXPECT_TRUE(CopyAlias(out, "data:a"));
    EXPECT_EQ(out, "data");
    EXPECT_FALSE(CopyAlias(out, "C:\\a"));
    EXPECT_EQ(GetFolder("DATA:a\\b.c", out, 260), 7u);
    EXPECT_EQ(out, "DATA:a\\");
    EXPECT_EQ(GetFolder("b.c", out, 260), 0u);
    EXPECT_EQ(GetFolder("DATA:a\\b.c", out, 6), 0u);
    std::string path = "DATA:a\\b.c";
    EXPECT_TRUE(SetFileName(path, "x.tga"));
    EXPECT_EQ(path, "DATA:a\\x.tga");
    EXPECT_THROW(SetFileName(path, "y\\x"), std::runtime_error);
    EXPECT_TRUE(MakeRelative(path, "data:A"));
    EXPECT_EQ(path, "x.tga");
    EXPECT_FALSE(MakeRelative(path, "data:A"));
    path = "art\\ART\\x";
    EXPECT_TRUE(ReplaceInPath(path, "Art\\", "b\\"));
    EXPECT_EQ(path, "b\\b\\x");
    EXPECT_FALSE(ReplaceInPath(path, "none", "b"));
    EXPECT_FALSE(ReplaceInPath(path, "b", std::string(200, 'x').c_str()));
    EXPECT_EQ(path, "b\\b\\x");
}
