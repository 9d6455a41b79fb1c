#include <filesystem>

#include <gmock/gmock.h>

#include "Tests/Host/App/ChildProgram.h"
#include "Tests/Host/App/TestFolder.h"
#include "Tests/Shared/Cross/RenderAnim/Chunks/PayloadBytes.h"

using testing::HasSubstr;
using testing::StartsWith;

namespace {

class PvxDumpProgram : public TestFolder {
protected:
    static ProgramResult Run(const std::vector<std::string>& words) { return RunProgram("pvxdump", words); }

    // One line on standard error, nothing on standard output, status 2.
    static void ExpectFault(const std::vector<std::string>& words, const std::string& start) {
        const ProgramResult result = Run(words);
        EXPECT_EQ(result.status, 2) << start;
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, StartsWith(start));
        EXPECT_EQ(Lines(result.err).size(), 1u) << result.err;
    }
};

TEST_F(PvxDumpProgram, PrintsAFileUnderAnyName) {
    const std::string bytes = ChunkBytes::FileHeader() + NamedFolder("QPVX", "Walker", "", 1);
    for (const char* pName : {"walker.pvx", "with blank", "MiXed.PVX", "\xC3\x84rmel.pvx"}) {
        const ProgramResult result = Run({Write(pName, bytes)});
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_THAT(result.out, HasSubstr("model \"Walker\"")) << pName;
    }
    EXPECT_THAT(Run({Write("x", bytes), "--chunks"}).out, HasSubstr("QPVX"));
    EXPECT_THAT(Run({Write("x", bytes), "--json", "--vertices"}).out, StartsWith("{"));
    EXPECT_EQ(Run({"--help"}).status, 0);
}

TEST_F(PvxDumpProgram, FaultsAreOneLineWithTheFile) {
    ExpectFault({At("nothing.pvx")}, At("nothing.pvx") + ": there is no such file");
    ExpectFault({m_Folder.string()}, m_Folder.string() + ": is a folder");
    ExpectFault({Write("empty.pvx", "")}, At("empty.pvx") + ": Not a valid chunky file!");
    ExpectFault({Write("text.pvx", std::string(100, 'x'))}, At("text.pvx") + ": Not a valid chunky file!");
    const std::string name(1100, 'n');
    ExpectFault(
        {Write("name.pvx", ChunkBytes::FileHeader() + ChunkBytes::Folder("QPVX", NamedData("MARK", name, "", 1)))},
        At("name.pvx") + ": ");
    ExpectFault({}, "pvxdump: ");
    ExpectFault({"a", "b"}, "pvxdump: ");
    ExpectFault({"a", "--what"}, "pvxdump: ");
    ExpectFault({"a", "--vertices"}, "pvxdump: ");
    ExpectFault({"a", "--keys"}, "pvxdump: ");
    ExpectFault({"a", "--json", "--chunks", "--vertices"}, "pvxdump: ");
}

} // namespace
