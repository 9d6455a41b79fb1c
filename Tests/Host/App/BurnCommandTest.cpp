#include "Shared/PC/FileSystem/OSFile.h"
#include "Tests/Host/App/ChildProgram.h"
#include "Tests/Host/App/TestFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;

// Burns through the program, the module and the burner, as their users have them.
class BurnCommand : public TestFolder {
protected:
    BurnCommand() {
        setenv("PVX_PIPES", At("pipes").c_str(), 1);
        for (const char* pName : {"gen/art", "fin", "tools"})
            std::filesystem::create_directories(At(pName));
        Write("pipeline.ini",
              "[global]\r\nToolsData=tools\r\n[burner]\r\nburnerPath=" + OSFile::FromNative(PVX_PROGRAM_FOLDER) +
                  "\r\n[p4]\r\nRevControlPort=\r\n[project:a]\r\nDescription=a\r\nDataBurn=b\r\nDataSource=s\r\n"
                  "DataSourceShared=h\r\nDataIntermediate=i\r\nDataGeneric=gen\r\nDataFinal=fin\r\nDataPreview=p\r\n"
                  "LocaleFolder=l\r\nAttrLoc=x\r\nParent=\r\n");
        Write("gen/_default.burn",
              "burn_version = 1\nburn_targets = { { name = \"g\", wildcard = \".*\\\\.txt\", targets = { { target = "
              "\"copy\", plugin = \"copy\", destination = \"DATA:\" } } } }\n");
    }
    ~BurnCommand() override { unsetenv("PVX_PIPES"); }

    ProgramResult Burn(const std::string& name) const { return RunProgram("pvxhost", {"burn", At(name)}); }
};

TEST_F(BurnCommand, MessagesAndASummary) {
    Write("gen/art/a.txt", "a");
    Write("gen/art/b.doc", "b");
    const ProgramResult one = Burn("gen/art/a.txt");
    EXPECT_EQ(one.status, 0);
    EXPECT_EQ(one.out, "art\\a.txt --[1/1] copy: wrote DATA:art\\a.txt\n"
                       "BurnerImp --1 file: 1 burned, 0 up to date, 0 failed\n");
    EXPECT_THAT(one.err, MatchesRegex(".*a.txt: burned after [0-9.]+ s, 0 errors, 0 warnings\n"));
    EXPECT_EQ(Read("fin/art/a.txt"), "a");
    const ProgramResult folder = Burn("gen/art");
    EXPECT_EQ(folder.status, 0);
    EXPECT_THAT(folder.err, EndsWith("0 errors, 1 warning\n"));
    EXPECT_EQ(Burn("gen/art/*.tx?").status, 0);
}

TEST_F(BurnCommand, Failures) {
    const ProgramResult missing = Burn("gen/art/no.txt");
    EXPECT_EQ(missing.status, 2);
    EXPECT_THAT(missing.err, HasSubstr("no.txt: there is no such file; name a file or a folder"));
    Write("gen/art/a.txt", "a");
    Write("gen/art/a.txt.burn", "burn_params = ");
    const ProgramResult bad = Burn("gen/art/a.txt");
    EXPECT_EQ(bad.status, 1);
    EXPECT_THAT(bad.out, EndsWith("Burner: Burn failed, see log messages.'\n"));
    EXPECT_THAT(bad.err, HasSubstr("the burn failed after "));
    Write("outside.txt", "o");
    const ProgramResult outside = Burn("outside.txt");
    EXPECT_EQ(outside.status, 2);
    EXPECT_THAT(outside.err, HasSubstr("outside.txt: lies in the generic folder of no project of \""));
}

} // namespace
