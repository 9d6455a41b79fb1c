#include "Shared/PC/Win32Util/NamedPipe.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/PC/Win32Util/ChildProcess.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <filesystem>
#include <numeric>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Role = NamedPipe::Role;

class NamedPipeTest : public testing::Test {
protected:
    NamedPipeTest() {
        dbSetThrowOnAssert(true);
        setenv("PVX_PIPES", m_Folder.Native("pipes").c_str(), 1);
    }
    ~NamedPipeTest() override { unsetenv("PVX_PIPES"); }

    void Connect() {
        ASSERT_TRUE(m_Server.Open());
        ASSERT_TRUE(m_Client.Open());
        ASSERT_TRUE(m_Server.Connect());
        ASSERT_TRUE(m_Client.Connect());
    }
    static bool Send(NamedPipe& pipe, const std::string& text) {
        return pipe.Write(text.data(), static_cast<uint32_t>(text.size()));
    }
    // The rest of a message, in pieces.
    static std::string Take(NamedPipe& pipe, uint32_t piece = 1000) {
        std::string text;
        for (bool more = true; more;) {
            std::string part(piece, '?');
            uint32_t read = 0;
            if (!pipe.Read(part.data(), piece, read, more))
                return "failed";
            text.append(part, 0, read);
        }
        return text;
    }
    size_t CountOffers() const {
        return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(m_Folder.Native("pipes")), {}));
    }

    TempFolder m_Folder;
    NamedPipe m_Server{"Pipe", Role::Server};
    NamedPipe m_Client{"Pipe", Role::Client};
};

TEST_F(NamedPipeTest, PathsTellWhereThePipeIs) {
    EXPECT_EQ(m_Server.GetPath(), "\\\\.\\pipe\\Pipe");
    EXPECT_EQ(NamedPipe("P", Role::Client, "box").GetPath(), "\\\\box\\pipe\\P");
    EXPECT_EQ(NamedPipe("P", Role::Server, "box").GetPath(), "\\\\.\\pipe\\P");
    EXPECT_FALSE(NamedPipe("P", Role::Client, "box").Open());
    EXPECT_FALSE(NamedPipe("../P", Role::Server).Open());
}

TEST_F(NamedPipeTest, OneWriteIsOneMessage) {
    Connect();
    EXPECT_TRUE(Send(m_Client, "first"));
    EXPECT_TRUE(Send(m_Client, "second"));
    char piece[3];
    uint32_t read = 0;
    bool more = false;
    EXPECT_TRUE(m_Server.Read(piece, 3, read, more));
    EXPECT_EQ(std::string(piece, read), "fir");
    EXPECT_TRUE(more);
    bool hasData = false;
    EXPECT_TRUE(m_Server.Peek(hasData) && hasData);
    EXPECT_EQ(Take(m_Server), "st");
    EXPECT_EQ(Take(m_Server, 6), "second");
    EXPECT_TRUE(m_Server.Peek(hasData) && !hasData);
    EXPECT_TRUE(Send(m_Server, "back"));
    EXPECT_EQ(Take(m_Client), "back");
    EXPECT_FALSE(Send(m_Server, ""));
}

TEST_F(NamedPipeTest, MessagesOfAnySizePass) {
    Connect();
    for (const uint32_t size : {65535u, 65536u, 65537u, 1u << 20, 20u << 20}) {
        std::string text(size, '\0');
        std::iota(text.begin(), text.end(), '\0');
        EXPECT_TRUE(Send(m_Server, text));
        EXPECT_TRUE(Send(m_Server, "next"));
        EXPECT_TRUE(Take(m_Client, 100000) == text) << size;
        EXPECT_EQ(Take(m_Client), "next");
    }
}

TEST_F(NamedPipeTest, APipeTellsWhenItFills) {
    Connect();
    EXPECT_TRUE(m_Client.IsFlushed());
    int count = 0;
    for (; m_Client.HasRoom(); ++count)
        ASSERT_TRUE(Send(m_Client, std::string(100, 'x')));
    EXPECT_GT(count, 20);
    EXPECT_FALSE(m_Client.IsFlushed());
    while (count-- > 0)
        Take(m_Server);
    EXPECT_TRUE(m_Client.HasRoom());
    EXPECT_TRUE(m_Client.IsFlushed());
}

TEST_F(NamedPipeTest, WhatWasSentOutlivesItsSender) {
    Connect();
    EXPECT_TRUE(Send(m_Client, "last words"));
    EXPECT_TRUE(Send(m_Server, "never read"));
    EXPECT_FALSE(m_Client.IsFlushed());
    std::thread closing([&] { m_Client.Close(); }); // waits for its words to be taken
    EXPECT_EQ(Take(m_Server), "last words");
    closing.join();
    bool hasData = true;
    EXPECT_FALSE(m_Server.Peek(hasData));
    EXPECT_FALSE(hasData);
    EXPECT_EQ(Take(m_Server), "failed");
    EXPECT_FALSE(Send(m_Server, "too late"));
}

TEST_F(NamedPipeTest, TheServersWordsStayReadableWithoutIt) {
    Connect();
    EXPECT_TRUE(Send(m_Client, "dropped"));
    EXPECT_TRUE(Send(m_Server, "kept"));
    m_Server.Close();
    EXPECT_EQ(Take(m_Client), "kept");
    EXPECT_EQ(Take(m_Client), "failed");
    EXPECT_FALSE(Send(m_Client, "too late"));
}

TEST_F(NamedPipeTest, AFloodDoesntKeepTheServerFromClosing) {
    Connect();
    std::thread flood([&] {
        while (Send(m_Client, "more")) {
        }
    });
    EXPECT_EQ(Take(m_Server), "more");
    m_Server.Close();
    flood.join();
}

TEST_F(NamedPipeTest, StatesAreKept) {
    EXPECT_FALSE(Send(m_Server, "x"));
    EXPECT_THROW(m_Server.Connect(), std::runtime_error);
    EXPECT_FALSE(m_Client.Open());
    ASSERT_TRUE(m_Server.Open());
    EXPECT_FALSE(m_Server.Open());
    EXPECT_EQ(Take(m_Server), "failed");
    int asked = 0;
    EXPECT_FALSE(m_Server.Connect([&] { return ++asked < 3; }));
    EXPECT_EQ(asked, 3);
    ASSERT_TRUE(m_Client.Open());
    ASSERT_TRUE(m_Server.Connect());
    EXPECT_THROW(m_Server.Connect(), std::runtime_error);
    m_Server.Close();
    m_Server.Close();
    EXPECT_TRUE(m_Server.Open());
}

TEST_F(NamedPipeTest, EachServerHasOneClient) {
    NamedPipe second("Pipe", Role::Server);
    ASSERT_TRUE(m_Server.Open());
    ASSERT_TRUE(second.Open());
    NamedPipe other("Pipe", Role::Client);
    NamedPipe third("Pipe", Role::Client);
    ASSERT_TRUE(m_Client.Open());
    ASSERT_TRUE(other.Open());
    EXPECT_FALSE(third.Open());
    ASSERT_TRUE(m_Server.Connect());
    ASSERT_TRUE(second.Connect());
    EXPECT_EQ(CountOffers(), 0u);
}

TEST_F(NamedPipeTest, JobsOfOthersAreLeftAlone) {
    ASSERT_TRUE(m_Server.Open());
    const std::string offer = std::filesystem::directory_iterator(m_Folder.Native("pipes"))->path();
    const std::string others = m_Folder.Native("pipes/Pipe." + std::to_string(getpid() + getppid()) + ".0");
    std::filesystem::rename(offer, others);
    EXPECT_FALSE(m_Client.Open());
    std::filesystem::rename(others, offer);
    EXPECT_TRUE(m_Client.Open());
}

TEST_F(NamedPipeTest, NothingStaysBehind) {
    // A server that is killed before its client comes.
    const pid_t killed = fork();
    if (killed == 0)
        _exit(m_Server.Open() ? 0 : 1);
    int status = -1;
    waitpid(killed, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(CountOffers(), 1u);
    EXPECT_FALSE(m_Client.Open());
    ASSERT_TRUE(m_Server.Open());
    EXPECT_EQ(CountOffers(), 1u);
    m_Server.Close();
    EXPECT_EQ(CountOffers(), 0u);
}

TEST_F(NamedPipeTest, NobodyElseEntersTheFolder) {
    ASSERT_TRUE(m_Server.Open());
    struct stat facts {};
    ASSERT_EQ(stat(m_Folder.Native("pipes").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777u, 0700u);
    m_Server.Close();
    chmod(m_Folder.Native("pipes").c_str(), 0755);
    EXPECT_FALSE(m_Server.Open());
    // The other side would look for it elsewhere.
    setenv("PVX_PIPES", std::filesystem::relative(m_Folder.Native("others")).c_str(), 1);
    EXPECT_FALSE(m_Server.Open());
}

// A client of another make, which passes what it likes.
TEST_F(NamedPipeTest, PassedFilesAreNotTrusted) {
    ASSERT_TRUE(m_Server.Open());
    const std::string offer = std::filesystem::directory_iterator(m_Folder.Native("pipes"))->path();
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    offer.copy(address.sun_path, sizeof address.sun_path - 1);
    const int client = socket(AF_UNIX, SOCK_SEQPACKET, 0);
    ASSERT_EQ(connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_TRUE(m_Server.Connect());
    const auto pass = [&](int passed) {
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
        char mark = 0;
        iovec part{&mark, 1};
        const msghdr packet{nullptr, 0, &part, 1, control, sizeof control, 0};
        cmsghdr* pHeader = CMSG_FIRSTHDR(&packet);
        *pHeader = {CMSG_LEN(sizeof passed), SOL_SOCKET, SCM_RIGHTS};
        memcpy(CMSG_DATA(pHeader), &passed, sizeof passed);
        ASSERT_EQ(sendmsg(client, &packet, 0), 1);
    };
    const int zero = open("/dev/zero", O_RDONLY);
    pass(zero);
    EXPECT_EQ(Take(m_Server), "failed");
    const int sparse = open(m_Folder.Native("sparse").c_str(), O_RDWR | O_CREAT, 0600);
    ASSERT_EQ(ftruncate(sparse, off_t{1} << 40), 0);
    pass(sparse);
    char piece[4];
    uint32_t read = 0;
    bool more = false;
    EXPECT_TRUE(m_Server.Read(piece, 4, read, more) && more);
    ASSERT_EQ(ftruncate(sparse, 2), 0);
    EXPECT_FALSE(m_Server.Read(piece, 4, read, more));
    for (const int descriptor : {zero, sparse, client})
        close(descriptor);
}

} // namespace
