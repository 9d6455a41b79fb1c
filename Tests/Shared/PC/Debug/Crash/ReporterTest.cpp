#include "Shared/PC/Debug/Crash/Reporter.h"

#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::string>;

ReporterCall MakeCall() {
    ReporterCall call;
    call.folder = "/opt/my tools/BugReport/";
    call.file = "BugReport.exe";
    call.process = 4711;
    call.executable = "pvxhost";
    call.reason = "Crash";
    return call;
}

} // namespace

TEST(Reporter, CommandLines) {
    ReporterCall call = MakeCall();
    const std::string bare = BuildReporterCommandLine(call);
    EXPECT_EQ(bare, R"("/opt/my tools/BugReport/BugReport.exe" 4711 "pvxhost" "Crash")");
    call.isCrash = false;
    call.furtherText = "further text";
    call.version = "1.2";
    call.language = "english";
    call.config = "/etc/bugreport.ini";
    call.texts = {R"(say "no")", "two"};
    call.files = {{"/a b.log", false}, {R"(/c"d.log)", true}};
    const std::string line = BuildReporterCommandLine(call);
    EXPECT_EQ(line, bare + R"( -i "further text" -v 1.2 -l english -c /etc/bugreport.ini -m)"
                           R"( -t "say \"no\"" -t "two" -f "/a b.log" -fd "/c\"d.log")");
    EXPECT_EQ(SplitCommandLine(line).at(14), call.texts[0]);
}

TEST(Reporter, WordsOfACommandLine) {
    const std::pair<const char*, Words> lines[] = {{"", {}},
                                                   {"  one   two ", {"one", "two"}},
                                                   {R"("one two" three)", {"one two", "three"}},
                                                   {R"(-t "say \"no\"" "")", {"-t", R"(say "no")", ""}},
                                                   {R"(Z:\art\x.pvx "a\b")", {R"(Z:\art\x.pvx)", R"(a\b)"}},
                                                   {R"(open"ed here)", {"opened here"}}};
    for (const auto& [pLine, words] : lines)
        EXPECT_EQ(SplitCommandLine(pLine), words) << pLine;
}

TEST(Reporter, ConfigurationIsTheNearestOne) {
    const TempFolder folder;
    const std::string settings = folder.Native("settings/");
    const std::string program = folder.Native("a/b/pvxhost");
    EXPECT_EQ(FindReporterConfig(settings, program), "");
    for (const char* pPlace : {"bugreport.ini", "a/b/bugreport.ini", "settings/bugreport.ini"}) {
        folder.Write(pPlace, "[mail]\n");
        EXPECT_EQ(FindReporterConfig(settings, program), folder.Native(pPlace));
    }
}
