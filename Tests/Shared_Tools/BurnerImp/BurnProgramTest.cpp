#include "Shared/Cross/FileSystem/ChunkyReservedTypes.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Files/ResourceLoaders.h"
#include "Shared/Cross/RenderAnim/Final/FinalFile.h"
#include "Shared_Tools/Burner/BurnerProcess.h"
#include "Tests/Shared/Cross/RevControlAPI/P4Server.h"
#include "Tests/Shared_Tools/BurnerImp/BurnProject.h"

#include <csignal>
#include <thread>

#include <sys/ptrace.h>
#include <sys/wait.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class BurnProgram : public BurnProject {};

// Of the first one; empty without a child.
std::string GetProgramOfChild(pid_t parent) {
    const std::string id = std::to_string(parent);
    pid_t child = 0;
    std::ifstream("/proc/" + id + "/task/" + id + "/children") >> child;
    std::error_code ignored;
    return std::filesystem::read_symlink("/proc/" + std::to_string(child) + "/exe", ignored);
}

TEST_F(BurnProgram, EveryKindOfFileIsBurned) {
    WriteModel("art/Tank/Walker", true);
    WriteShader("art/Tank/shared");
    WritePattern("art/Tank/trim");
    m_Folder.Write("gen/art/Tank/notes.txt", "some notes");
    ASSERT_EQ(Burn("gen/art/Tank", ".*\\.(pvx|qsh|otp|txt)"), 1) << testing::PrintToString(m_Texts);
    EXPECT_THAT(m_Texts, ElementsAre("art\\Tank\\notes.txt --[1/4] copy: wrote DATA:texts\\art\\Tank\\notes.txt",
                                     "art\\Tank\\shared.qsh --[2/4] shader: wrote DATA:art\\Tank\\shared.qsh",
                                     "art\\Tank\\trim.otp --[3/4] pattern: wrote DATA:art\\Tank\\trim.otp",
                                     "art\\Tank\\Walker.pvx --[4/4] model: wrote DATA:art\\Tank\\Walker.obm, "
                                     "DATA:art\\Tank\\Walker.obe",
                                     "BurnerImp --4 files: 4 burned, 0 up to date, 0 failed"));
    EXPECT_EQ(m_Folder.Read("fin/texts/art/Tank/notes.txt"), "some notes");
    EXPECT_EQ(m_Folder.Read("fin/art/Tank/trim.otp"), m_Folder.Read("gen/art/Tank/trim.otp"));
    EXPECT_TRUE(m_Folder.IsClean());

    FilePath::AddSource("DATA", "final", 1, FilePathHD::Create(m_Folder.Path("fin").c_str(), ByteStream::Mode_Read));
    std::unique_ptr<RenderModel> pModel = ra::LoadFinal("art/Tank/Walker");
    ASSERT_TRUE(pModel);
    EXPECT_EQ(pModel->GetMeshGroup()->GetMeshCount(), 2u);
    EXPECT_EQ(pModel->GetAnimList()->GetCount(), 2u);
    const Texture* pTexture = pModel->GetMeshGroup()->GetShader(0)->GetChannelTexture(0).GetData();
    EXPECT_EQ(pTexture->GetLevelCount(), 6u);
    const std::unique_ptr<Shader> pShader = ra::LoadSharedShaderFinal("art/Tank/shared");
    ASSERT_TRUE(pShader);
    EXPECT_EQ(pShader->GetChannelTexture(0)->GetWidth(), 16u);
    Pattern pattern;
    EXPECT_TRUE(Pattern::Load("DATA:art/Tank/trim.otp", pattern));
    Forget(std::move(pModel));
    FilePath::RemoveSource("DATA", "final");
}

TEST_F(BurnProgram, WhatIsUpToDateIsLeftAlone) {
    WriteModel("art/a", true);
    for (const char* pName : {"gen/_default.burn", "gen/art/a.pvx", "gen/art/a.ebp"})
        SetOld(pName);
    const auto burn = [&](const Flags& flags = {}) {
        EXPECT_EQ(Burn("gen/art", "a\\.pvx", flags), 1);
        return m_Texts.at(0).substr(m_Texts.at(0).find(": ") + 2);
    };
    const std::string wrote = "wrote DATA:art\\a.obm, DATA:art\\a.obe";
    const std::string upToDate = "DATA:art\\a.obm, DATA:art\\a.obe are up to date";
    EXPECT_EQ(burn(), wrote);
    SetOld("fin/art/a.obe");
    for (const char* pName : {"gen/_default.burn", "gen/art/a.pvx", "gen/art/a.ebp"})
        std::filesystem::last_write_time(m_Folder.Get().Native(pName),
                                         std::filesystem::file_time_type::clock::now() - std::chrono::hours(2));
    EXPECT_EQ(burn(), upToDate);
    EXPECT_EQ(m_Texts.at(1), "BurnerImp --1 file: 0 burned, 1 up to date, 0 failed");
    EXPECT_EQ(burn({.sayOnly = true}), upToDate);
    EXPECT_EQ(burn({.all = true, .sayOnly = true}), "would write DATA:art\\a.obm, DATA:art\\a.obe");
    EXPECT_EQ(burn({.all = true}), wrote);
    for (const char* pName : {"gen/_default.burn", "gen/art/a.pvx", "gen/art/a.ebp"}) {
        EXPECT_EQ(burn(), upToDate);
        Touch(pName);
        EXPECT_EQ(burn(), wrote) << pName;
        SetOld(pName);
    }
    m_Folder.Get().Remove("fin/art/a.obe");
    EXPECT_EQ(burn(), wrote);
    m_Folder.Write("gen/art/a.pvx.burn", MakeParams("models", "model", "{ \"useDXTC\", \"1\" }"));
    Touch("gen/art/a.pvx.burn");
    EXPECT_EQ(burn(), wrote);
    SetOld("gen/art/a.pvx.burn");
    EXPECT_EQ(burn(), upToDate);
    m_Folder.Get().Remove("fin/art/a.obm");
    m_Folder.Get().MakeFolder("fin/art/a.obm");
    EXPECT_EQ(Burn("gen/art", "a\\.pvx", {.revisionControl = true}), 0); // a folder is no output
    EXPECT_THAT(m_Texts[0], HasSubstr("DATA:art\\a.obm can't be opened in changelist 0: there is no server"));
}

TEST_F(BurnProgram, OneBadFileDoesntStopTheOthers) {
    m_Folder.Write("gen/art/a.txt", "a");
    m_Folder.Write("gen/art/b.pvx", "no model");
    m_Folder.Write("gen/art/c.txt", "c");
    m_Folder.Write("gen/art/d.doc", "in no group");
    m_Folder.Write("fin/art/b.obm", "the one of before");
    EXPECT_EQ(Burn("gen/art", ".*", {.all = true}), 0);
    EXPECT_THAT(m_Texts, ElementsAre("art\\a.txt --[1/4] copy: wrote DATA:texts\\art\\a.txt",
                                     HasSubstr("Error: art\\b.pvx --target 'model': "),
                                     "art\\c.txt --[3/4] copy: wrote DATA:texts\\art\\c.txt",
                                     "Warning: art\\d.doc --matches no target group of its burn configuration",
                                     "BurnerImp --4 files: 2 burned, 0 up to date, 1 failed, 1 in no target group"));
    EXPECT_EQ(m_Folder.Read("fin/art/b.obm"), "the one of before");
    EXPECT_FALSE(m_Folder.Has("fin/art/b.obm.part"));
}

TEST_F(BurnProgram, AFileFailsWithAnyOfItsTargets) {
    m_Folder.Write("gen/art/a.txt", "a");
    m_Folder.Write("gen/_default.burn", MakeScript(R"({ name = "g", wildcard = "a.*", targets = {
        { target = "bad", plugin = "model", destination = "DATA:" },
        { target = "copy", plugin = "copy", destination = "DATA:" } } },)"));
    EXPECT_EQ(Burn("gen/art", "a.txt"), 0);
    EXPECT_THAT(m_Texts, ElementsAre("Error: art\\a.txt --target 'bad': plug-in 'model' takes .pvx files",
                                     "art\\a.txt --[1/1] copy: wrote DATA:art\\a.txt",
                                     "BurnerImp --1 file: 0 burned, 0 up to date, 1 failed"));
    EXPECT_EQ(m_Folder.Read("fin/art/a.txt"), "a");
}

TEST_F(BurnProgram, ConfigurationsThatCantBeUsed) {
    m_Folder.Write("gen/art/a.txt", "a");
    const auto burn = [&](const std::string& plugin, const std::string& destination, const std::string& params = "") {
        const std::string group = "{ name = \"g\", wildcard = \"a.*\", targets = { { target = \"t\", plugin = \"" +
                                  plugin + "\", destination = \"" + destination + "\" } } },";
        m_Folder.Write("gen/_default.burn", MakeScript(group, params));
        const int32_t result = Burn("gen/art", "a.txt");
        return std::to_string(result) + " " + m_Texts.at(0);
    };
    EXPECT_EQ(burn("melt", "DATA:"), "0 Error: art\\a.txt --target 't': plug-in 'melt' is unknown; there are model, "
                                     "shader, pattern, copy");
    EXPECT_EQ(burn("Shader", "DATA:"), "0 Error: art\\a.txt --target 't': plug-in 'Shader' takes .qsh files");
    EXPECT_EQ(burn("copy", "art"), "0 Error: art\\a.txt --target 't': destination 'art' is no alias path; it reads "
                                   "like DATA: or DATA:art");
    EXPECT_EQ(burn("copy", "DATA:" + std::string(250, 'd')).substr(0, 60),
              std::string("0 Error: art\\a.txt --target 't': the output's path 'DATA:dddddddd").substr(0, 60));
    EXPECT_THAT(burn("copy", "NOWHERE:"), HasSubstr("nothing is mapped to the alias of 'NOWHERE:'"));
    EXPECT_EQ(burn("copy", "DATA:x\\\\.."), "1 art\\a.txt --[1/1] t: wrote DATA:art\\a.txt");
    EXPECT_THAT(burn("copy", "DATA:..\\\\.."), HasSubstr("leads out of its alias"));
    EXPECT_EQ(burn("copy", "DATA:", MakeParams("g", "t", "{ \"Speed\", \"9\" }")),
              "1 Warning: art\\a.txt --target 't': parameter 'Speed' is unknown to plug-in 'copy'");
    EXPECT_EQ(burn("copy", "DATA:", MakeParams("g", "t", "{ \"burnInfo\", \"maybe\" }")),
              "0 Error: art\\a.txt --target 't': parameter 'burnInfo' is 'maybe' and has to be \"true\" or \"false\"");
    m_Folder.Write("gen/_default.burn", "burn_version = ");
    EXPECT_EQ(Burn("gen/art", "a.txt"), 0);
    EXPECT_THAT(m_Texts, Contains(HasSubstr("Error: ")));
    m_Folder.Get().Remove("gen/_default.burn");
    EXPECT_EQ(Burn("gen/art", "a.txt"), 0);
    EXPECT_THAT(m_Texts, Contains(HasSubstr("has no burn configuration that can be used")));
}

TEST_F(BurnProgram, JobsByFolder) {
    m_Folder.Write("gen/art/B/2.txt", "2");
    m_Folder.Write("gen/art/1.TXT", "1");
    m_Folder.Write("gen/art/a/3.txt", "3");
    m_Folder.Write("gen/art/a/3.txt.burn", MakeParams("texts", "copy", "")); // is no file to burn
    EXPECT_EQ(Burn("gen/art", "[0-9]\\.txt$", {.sayOnly = true}), 1);
    EXPECT_THAT(m_Texts, ElementsAre(HasSubstr("art\\1.TXT --[1/1] copy: would write DATA:texts\\art\\1.TXT"),
                                     HasSubstr("1 file: ")));
    EXPECT_EQ(Burn("gen/art", ".*", {.subfolders = true, .sayOnly = true}), 1);
    EXPECT_THAT(m_Texts, ElementsAre(HasSubstr("[1/3]"), HasSubstr("art\\a\\3.txt --[2/3]"),
                                     HasSubstr("art\\B\\2.txt --[3/3]"), HasSubstr("3 files: ")));
    EXPECT_TRUE(std::filesystem::is_empty(m_Folder.Get().Native("fin")));
    m_Folder.Get().Remove("fin");
    EXPECT_EQ(Burn("gen/art", "1.*", {.sayOnly = true}), 1);
    EXPECT_FALSE(m_Folder.Has("fin"));
    EXPECT_EQ(Burn("gen/art", "nothing"), 1);
    EXPECT_THAT(m_Texts, Contains(HasSubstr("Warning: BurnerImp --no file in ")));
    EXPECT_EQ(Burn("gen/nowhere"), -1);
    EXPECT_THAT(m_Texts, ElementsAre(HasSubstr("isn't there")));
    EXPECT_EQ(Burn("gen/art", "["), -1);
    EXPECT_THAT(m_Texts, ElementsAre(HasSubstr("'[' is no regular expression: ")));
    m_Folder.Write("gen/art/" + std::string(100, 'a') + ".txt", "");
    EXPECT_EQ(Burn("gen/art", "(a|aa)+b"), -1);
    EXPECT_THAT(m_Texts, ElementsAre(HasSubstr("is too much work to match")));
    m_Folder.Write("elsewhere/x.txt", "x");
    EXPECT_EQ(Burn("elsewhere"), 0);
    EXPECT_THAT(m_Texts, Contains(HasSubstr("lies in no project's generic folder")));
}

TEST_F(BurnProgram, JobsByList) {
    m_Folder.Write("gen/art/1.txt", "1");
    m_Folder.Write("gen/..2.txt", "2");
    const std::vector<std::string> files{m_Folder.Path("gen/..2.txt"), m_Folder.Path("gen/art/no.txt"),
                                         m_Folder.Path("gen/art/1.txt")};
    BurnerMessageList messages;
    int32_t result = -1;
    EXPECT_TRUE(m_pBurner->BurnFileList(0, files, result, messages, false));
    EXPECT_EQ(result, 0);
    ASSERT_EQ(messages.size(), 4u);
    EXPECT_THAT(messages[1].text, HasSubstr("no.txt --there is no such file"));
    EXPECT_EQ(m_Folder.Read("fin/texts/..2.txt"), "2");
    EXPECT_EQ(m_Folder.Read("fin/texts/art/1.txt"), "1");
    EXPECT_TRUE(m_pBurner->BurnUpdateFileList(0, std::vector{files[0]}, result, messages));
    EXPECT_EQ(result, 1);
    EXPECT_THAT(messages.back().text, HasSubstr("1 up to date"));
}

TEST_F(BurnProgram, SetupsThatLackSomething) {
    m_Folder.Write("gen/art/a.txt", "a");
    std::string ini = BurnerFolder::GetIni();
    m_Folder.WriteIni(ini.erase(0, ini.find("[burner]")));
    EXPECT_EQ(Burn("gen/art"), -1);
    EXPECT_THAT(m_Texts, ElementsAre(HasSubstr("'ToolsData' is not listed under [Global] in ")));
    m_Folder.WriteIni("nothing");
    EXPECT_EQ(Burn("gen/art"), -1);
    EXPECT_THAT(m_Texts, ElementsAre(HasSubstr("the pipeline configuration can't be used: ")));
    m_Folder.Get().Remove("pipeline.ini");
    EXPECT_EQ(Burn("gen/art"), -1);
    EXPECT_THAT(m_Texts, ElementsAre(HasSubstr("there is no pipeline configuration '")));
    EXPECT_TRUE(m_Folder.IsClean());
}

TEST_F(BurnProgram, TheSameBytesEachTime) {
    WriteModel("art/a", true);
    WriteShader("art/s");
    WritePattern("art/p");
    const auto burn = [&] {
        EXPECT_EQ(Burn("gen/art", ".*\\.(pvx|qsh|otp)", {.all = true}), 1);
        std::string bytes;
        for (const char* pName : {"a.obm", "a.obe", "s.qsh", "p.otp"})
            bytes += m_Folder.Read(std::string("fin/art/") + pName);
        return bytes;
    };
    const std::string first = burn();
    EXPECT_EQ(burn(), first);
    EXPECT_EQ(first.find("FileBurnInfo"), first.npos);
    m_Folder.Write(
        "gen/art/_default.burn",
        "burn_params = { { name = \"models\", targets = { { target = \"model\", params = { { \"burnInfo\", "
        "\"true\" } } } } }, { name = \"shaders\", targets = { { target = \"shader\", params = { { "
        "\"burnInfo\", \"true\" } } } } }, { name = \"patterns\", targets = { { target = \"pattern\", params "
        "= { { \"burnInfo\", \"true\" } } } } } }");
    setenv("SOURCE_DATE_EPOCH", "86400", 1);
    const std::string dated = burn();
    EXPECT_EQ(burn(), dated);
    unsetenv("SOURCE_DATE_EPOCH");
    size_t count = 0;
    for (size_t at = 0; (at = dated.find("January 02, 1970", at)) != dated.npos; ++at)
        ++count;
    EXPECT_EQ(count, 4u);
    const auto pStream = MakeReadStream(m_Folder.Read("fin/art/a.obm"));
    Chunky chunky{ByteStreamAdapter(pStream.get())};
    EXPECT_EQ(ReadFileBurnInfo(chunky).first, "art\\a.pvx");
}

TEST_F(BurnProgram, TexturesAsTheParametersSay) {
    WriteShader("art/s");
    const auto burn = [&](const std::string& params) {
        m_Folder.Write("gen/art/s.qsh.burn", MakeParams("shaders", "shader", params));
        EXPECT_EQ(Burn("gen/art", "s\\.qsh", {.all = true}), 1);
        const std::unique_ptr<Shader> pShader =
            ra::ReadSharedShaderFinal(*MakeReadStream(m_Folder.Read("fin/art/s.qsh")));
        const Texture& texture = *pShader->GetChannelTexture(0).GetData();
        return std::string(GetTextureTypeName(texture.GetType())) + " " + std::to_string(texture.GetLevelCount());
    };
    EXPECT_EQ(burn(""), "RGB 5");
    Forget();
    EXPECT_EQ(burn("{ \"mipMaps\", \"false\" }"), "RGB 1");
    Forget();
    EXPECT_EQ(burn("{ \"useDXTC\", \"5\" }"), "DXT5 3"); // down to a block
    Forget();
    WriteShader("art/s", 20);
    EXPECT_EQ(Burn("gen/art", "s\\.qsh", {.all = true}), 0);
    EXPECT_THAT(m_Texts, Contains(HasSubstr("' of 20x20 can't be compressed: its sides have to be powers of two;")));
    EXPECT_THAT(m_Texts, Contains(HasSubstr("Warning: art\\s.qsh --Unable to compress RGB/RGBA texture to DXTC")));
}

TEST_F(BurnProgram, LevelsThatCameWithATextureStay) {
    WriteShader("art/s", 16, 2);
    m_Folder.Write("gen/art/s.qsh.burn", MakeParams("shaders", "shader", "{ \"mipMaps\", \"true\" }"));
    ASSERT_EQ(Burn("gen/art", "s\\.qsh"), 1);
    const std::unique_ptr<Shader> pShader = ra::ReadSharedShaderFinal(*MakeReadStream(m_Folder.Read("fin/art/s.qsh")));
    const Texture& texture = *pShader->GetChannelTexture(0).GetData();
    ASSERT_EQ(texture.GetLevelCount(), 2u);
    const std::unique_ptr<Image> pImage = MakeRandomImage(IMAGETYPE_RGB888, 16, 16, 2);
    for (uint32_t i = 0; i < 2; ++i) {
        const Texture::Level level = texture.GetLevel(i);
        EXPECT_TRUE(std::ranges::equal(level.pImage->GetData(level.level), pImage->GetData(i))) << i;
    }
}

TEST_F(BurnProgram, OutputsAreOpenedUnderRevisionControl) {
    P4Server server;
    server.Write("pipeline.ini", BurnerFolder::GetIni(P4Server::s_Port));
    for (const char* pName : {"gen/a.txt", "gen/b.txt", "gen/c.txt", "gen/d.txt"})
        server.Write(pName, pName);
    server.Write("gen/_default.burn", MakeScript(s_Groups));
    server.Write("tools/x", "");
    server.Submit("fin/texts/a.txt", "old a");
    server.Submit("fin/texts/b.txt", "old b", true, "text+l");
    server.OpenByOther("fin/texts/b.txt", true);
    const int change = server.MakeChange("burns");
    const int otherChange = server.MakeChange("by hand");
    server.Submit("fin/texts/d.txt", "old d");
    server.Open("fin/texts/d.txt", otherChange);
    OSFile::SetWritable(server.Path("fin/texts/d.txt").c_str(), true);
    Pipeline::Shutdown();
    ASSERT_EQ(Pipeline::Initialize(server.Path("gen/x").c_str()), Pipeline::Result_Ok);
    BurnerMessageList messages;
    int32_t result = -1;
    EXPECT_TRUE(m_pBurner->BurnDirect(change, server.Path("gen").c_str(), ".*\\.txt", true, false, false, true, result,
                                      messages));
    EXPECT_EQ(result, 0);
    ASSERT_EQ(messages.size(), 6u);
    EXPECT_THAT(messages[1].text, HasSubstr("Error: b.txt --target 'copy': DATA:texts\\b.txt can't be opened"));
    EXPECT_EQ(messages[3].text, "Warning: d.txt --DATA:texts\\d.txt stays opened in another changelist");
    EXPECT_EQ(server.GetOpened("fin/texts/a.txt"), "edit " + std::to_string(change));
    EXPECT_EQ(server.GetOpened("fin/texts/c.txt"), "add " + std::to_string(change));
    EXPECT_EQ(server.Read("fin/texts/a.txt"), "gen/a.txt");
    EXPECT_EQ(server.Read("fin/texts/b.txt"), "old b");
    EXPECT_EQ(server.Read("fin/texts/c.txt"), "gen/c.txt");
    EXPECT_EQ(server.GetOpened("fin/texts/d.txt"), "edit " + std::to_string(otherChange));
    EXPECT_EQ(server.Read("fin/texts/d.txt"), "gen/d.txt");
}

// Hosts that are killed in the middle of a job.
TEST_F(BurnProgram, AKilledHostLeavesNothing) {
    for (int i = 0; i < 2000; ++i)
        m_Folder.Write("gen/art/" + std::to_string(i) + ".txt", std::string(10000, 'x'));
    const pid_t host = fork();
    if (host == 0) {
        Burn("gen/art");
        _exit(0);
    }
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!m_Folder.Has("fin/texts/art/1.txt") && std::chrono::steady_clock::now() < limit)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    const std::string copy = GetProgramOfChild(host);
    EXPECT_THAT(copy, HasSubstr("/Burner_"));
    kill(host, SIGKILL);
    waitpid(host, nullptr, 0);
    EXPECT_FALSE(m_Folder.Has("fin/texts/art/999.txt")); // which comes last
    while (std::filesystem::exists(copy) && std::chrono::steady_clock::now() < limit)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_FALSE(std::filesystem::exists(copy));
    EXPECT_TRUE(m_Folder.IsClean());
    for (const auto& entry : std::filesystem::directory_iterator(m_Folder.Get().Native("fin/texts/art")))
        EXPECT_TRUE(entry.path().extension() == ".txt" && entry.file_size() == 10000u) << entry.path();
}

// A debugger on the host, which lets it run.
TEST_F(BurnProgram, WithADebuggerTheLocalModuleCanBeChosen) {
    m_Folder.Write("gen/art/a.txt", "a");
    m_Folder.Get().Remove("net/BurnerImp.exe");
    const pid_t host = fork();
    if (host == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        BurnerProcess::SetLocalQuestion([](const char* pTitle, const char* pText) {
            return pTitle == std::string("Local Burn?") &&
                   pText == std::string("Would you like to use the local BurnerImp.exe?");
        });
        const bool good = Burn("gen/art") == 1;
        _exit(good && std::filesystem::exists(Process::GetExecutableFolder() + "BurnerImp.exe") ? 0 : 1);
    }
    int status = 0;
    while (waitpid(host, &status, 0) == host && WIFSTOPPED(status))
        ptrace(PTRACE_CONT, host, nullptr, WSTOPSIG(status));
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(m_Folder.Read("fin/texts/art/a.txt"), "a");
}

} // namespace
