#include "Shared/Cross/Assist/Inventory.h"

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Tests/Shared/Cross/Assist/TestResources.h"
#include "Tests/Shared/PC/Debug/SelfRun.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

namespace {

constexpr char s_FolderVariable[] = "PVX_TEST_LOGS";

} // namespace

// Carried out in a process that was started with the word "invleaks".
TEST(LeakRun, DISABLED_LeaksTwoReferencesOfThree) {
    const std::string folder = OSFile::FromNative(std::getenv(s_FolderVariable)) + "\\";
    FilePath::AddSource("log", "test", 0, FilePathHD::Create(folder.c_str(), FilePath::Mode::Mode_Both));
    ReportCapture capture;
    Inv::Initialize();
    EXPECT_TRUE(ReportCapture::HasError("--- Inventory Leak Tracking Enabled ---"));
    Inv::Handle<Thing> rock;
    auto pThing = std::make_unique<Thing>();
    Thing* pLeaked = pThing.get();
    pThing->SetName("rock");
    rock.Set(std::move(pThing));
    Inv::Resource* pRock = rock.GetResource();
    Inv::AddRef(*pRock);
    const uint32_t returned = Inv::AddRef(*pRock);
    Inv::AddRef(*pRock);
    Inv::Release(*pRock, returned);
    EXPECT_THROW(Inv::Release(*pRock, returned), std::runtime_error) << "the same one again";
    Inv::AddRef(*pRock); // for the one that went with the mistake
    rock.Reset();
    Inv::Shutdown();
    delete pLeaked;
}

TEST(Leaks, AreWrittenWithTheStackThatTookTheReference) {
    const TempFolder folder;
    setenv(s_FolderVariable, folder.Native().c_str(), 1);
    const SelfRunResult result = RunSelf("LeakRun.DISABLED_LeaksTwoReferencesOfThree", "-invleaks");
    EXPECT_EQ(result.status, 0) << result.output;

    const std::string run = OSFile::List(folder.Path("*").c_str()).at(0);
    const std::string report = folder.Read(run + "/inventoryleaks.csv");
    EXPECT_TRUE(report.starts_with("Inventory Item,Stack0,Stack1,")) << report;
    EXPECT_NE(report.find("Stack31,\r\n"), std::string::npos);
    EXPECT_EQ(std::ranges::count(report, '\n'), 1 + 3) << report;
    EXPECT_NE(report.find("\nrock,"), std::string::npos);
    EXPECT_NE(report.find("LeakTest.cpp : Line "), std::string::npos) << report;
}
