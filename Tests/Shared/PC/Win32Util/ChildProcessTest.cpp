#include "Shared/PC/Win32Util/ChildProcess.h"

#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <csignal>
#include <functional>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using Outcome = ChildProcess::Outcome;
using Stream = ChildProcess::Stream;

constexpr ChildProcess::Limits s_Patient{30s, 30s};

class ChildProcessTest : public testing::Test {
protected:
    ChildProcess::Settings Shell(const std::string& script, Stream input = Stream::None) const {
        return {.program = "sh",
                .arguments = {"-c", script},
                .workingFolder = m_Folder.Path(),
                .input = input,
                .output = Stream::Pipe,
                .error = Stream::Pipe};
    }
    Outcome Exchange(const std::string& input = {}, const ChildProcess::Limits& limits = s_Patient) {
        return m_Process.Exchange(
            input, [this](std::string_view piece) { return m_Output.append(piece), true; },
            [this](std::string_view piece) { return m_Error.append(piece), true; }, limits);
    }
    // The process that the script names in a file.
    bool IsAlive(const std::string& file) const {
        const pid_t id = std::stoi("0" + m_Folder.Read(file));
        return id > 0 && kill(id, 0) == 0 && !IsZombie(id);
    }
    static bool IsZombie(pid_t id) {
        std::string facts;
        std::getline(std::ifstream("/proc/" + std::to_string(id) + "/stat"), facts);
        return facts.find(") Z ") != std::string::npos;
    }
    static void Await(const std::function<bool()>& condition) {
        for (int i = 0; i < 1000 && !condition(); ++i)
            std::this_thread::sleep_for(5ms);
        EXPECT_TRUE(condition());
    }

    TempFolder m_Folder;
    ChildProcess m_Process;
    std::string m_Output;
    std::string m_Error;
};

TEST_F(ChildProcessTest, StreamsFolderAndExitCode) {
    ASSERT_TRUE(m_Process.Start(Shell("pwd; cat; echo bad >&2; exit 7", Stream::Pipe))) << m_Process.GetError();
    EXPECT_EQ(Exchange("a form\n"), Outcome::Ended);
    EXPECT_EQ(m_Output, m_Folder.Native() + "\na form\n");
    EXPECT_EQ(m_Error, "bad\n");
    EXPECT_EQ(m_Process.GetExitCode(), 7);
    EXPECT_FALSE(m_Process.IsRunning());
}

// Nothing is split, expanded or left out on the way.
TEST_F(ChildProcessTest, ArgumentsArriveAsTheyAre) {
    const std::vector<std::string> words = {"", "a b", "$HOME", "`id`", "\"'", "*", "-n", "x;y", "\n"};
    ChildProcess::Settings settings = Shell("");
    settings.arguments = {"-c", "for word; do printf '[%s]' \"$word\"; done", "sh"};
    settings.arguments.insert(settings.arguments.end(), words.begin(), words.end());
    ASSERT_TRUE(m_Process.Start(settings));
    EXPECT_EQ(Exchange(), Outcome::Ended);
    std::string expected;
    for (const std::string& word : words)
        expected += "[" + word + "]";
    EXPECT_EQ(m_Output, expected);
}

TEST_F(ChildProcessTest, ProgramsAreFoundAsTheSystemSpellsThem) {
    m_Folder.Write("Bin/Tool.exe", "#!/bin/sh\necho it ran\n");
    std::filesystem::permissions(m_Folder.Native("Bin/Tool.exe"), std::filesystem::perms::owner_all);
    ChildProcess::Settings settings = Shell("");
    settings.arguments.clear();
    for (const std::string& program : {m_Folder.Path("bin/tool.EXE"), m_Folder.Native("Bin/Tool.exe")}) {
        settings.program = program;
        m_Output.clear();
        ASSERT_TRUE(m_Process.Start(settings)) << m_Process.GetError();
        EXPECT_EQ(Exchange(), Outcome::Ended);
        EXPECT_EQ(m_Output, "it ran\n");
    }
}

TEST_F(ChildProcessTest, WhatCantBeStartedSaysWhy) {
    m_Folder.Write("plain", "not a program");
    const struct {
        std::string program;
        std::string folder;
        const char* pReason;
    } cases[] = {{"no-such-program-here", "", "No such file"},
                 {m_Folder.Path("nothing"), "", "No such file"},
                 {m_Folder.Path("plain"), "", "Permission denied"},
                 {"C:\\p4.exe", "", "No such device"},
                 {"sh", m_Folder.Path("gone"), "no such folder"}};
    for (const auto& [program, folder, pReason] : cases) {
        EXPECT_FALSE(m_Process.Start({.program = program, .arguments = {}, .workingFolder = folder})) << program;
        EXPECT_THAT(m_Process.GetError(), HasSubstr(pReason)) << program;
        EXPECT_FALSE(m_Process.IsRunning());
        EXPECT_TRUE(m_Process.Wait(0ms));
        EXPECT_FALSE(m_Process.GetExitCode());
    }
}

// Far more than a pipe holds, each way at once.
TEST_F(ChildProcessTest, NeitherSideWaitsForTheOther) {
    const std::string input(3 << 20, 'i');
    ASSERT_TRUE(m_Process.Start(Shell("head -c 2000000 /dev/zero >&2; cat", Stream::Pipe)));
    EXPECT_EQ(Exchange(input), Outcome::Ended);
    EXPECT_EQ(m_Output.size(), input.size());
    EXPECT_EQ(m_Error.size(), 2000000u);
}

// This process would end by the signal of the broken pipe.
TEST_F(ChildProcessTest, AChildThatDoesntReadIsNoFailure) {
    ASSERT_TRUE(m_Process.Start(Shell("exec <&-; echo done; sleep 0.1", Stream::Pipe)));
    EXPECT_EQ(Exchange(std::string(1 << 20, 'x')), Outcome::Ended);
    EXPECT_EQ(m_Output, "done\n");
    EXPECT_EQ(m_Process.GetExitCode(), 0);
}

TEST_F(ChildProcessTest, LimitsEndAnExchange) {
    ASSERT_TRUE(m_Process.Start(Shell("echo start; sleep 100")));
    EXPECT_EQ(Exchange({}, {150ms, 30s}), Outcome::Silent);
    EXPECT_EQ(m_Output, "start\n");
    EXPECT_TRUE(m_Process.IsRunning());
    EXPECT_FALSE(m_Process.Wait(20ms));
    EXPECT_FALSE(m_Process.GetExitCode());
    m_Process.Kill();

    ASSERT_TRUE(m_Process.Start(Shell("while :; do echo more; sleep 0.02; done")));
    EXPECT_EQ(Exchange({}, {30s, 300ms}), Outcome::TooLong);
    m_Process.Kill();

    ASSERT_TRUE(m_Process.Start(Shell("cat /dev/zero")));
    size_t size = 0;
    EXPECT_EQ(m_Process.Exchange(
                  {}, [&](std::string_view piece) { return (size += piece.size()) < 100000; }, {}, s_Patient),
              Outcome::Refused);
    m_Process.Kill();
    EXPECT_EQ(m_Process.GetExitCode(), 128 + SIGKILL);
}

// A program that leaves another behind, which holds the pipes.
TEST_F(ChildProcessTest, AnExchangeEndsWithTheChildItself) {
    ASSERT_TRUE(m_Process.Start(Shell("sleep 100 & echo $! > left; echo out")));
    EXPECT_EQ(Exchange(), Outcome::Ended);
    EXPECT_EQ(m_Output, "out\n");
    EXPECT_TRUE(IsAlive("left"));
    m_Process.Kill();
    Await([this] { return !IsAlive("left"); });
    EXPECT_EQ(m_Process.GetExitCode(), 0);
}

TEST_F(ChildProcessTest, NoChildStaysAsAZombie) {
    pid_t id = 0;
    {
        ChildProcess process;
        ASSERT_TRUE(process.Start(Shell("echo $$ > id; sleep 0.05")));
        Await([this] { return !m_Folder.Read("id").empty(); });
        id = std::stoi(m_Folder.Read("id"));
    }
    Await([=] { return IsZombie(id); }); // it outlived its object
    ASSERT_TRUE(m_Process.Start(Shell("true")));
    EXPECT_NE(kill(id, 0), 0);
    EXPECT_EQ(Exchange(), Outcome::Ended);
}

// Locks and pipes of this process would stay open as long as the child runs.
TEST_F(ChildProcessTest, OpenFilesArentInherited) {
    const int file = dup(STDERR_FILENO);
    ASSERT_TRUE(m_Process.Start(Shell("ls /proc/self/fd | wc -l")));
    EXPECT_EQ(Exchange(), Outcome::Ended);
    EXPECT_LE(std::stoi(m_Output), 4); // three streams, and the folder that ls reads
    close(file);
}

} // namespace
