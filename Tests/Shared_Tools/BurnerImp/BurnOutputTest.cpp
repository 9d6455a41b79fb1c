#include "Shared_Tools/BurnerImp/BurnOutput.h"

#include "Shared/Cross/FileSystem/RamStream.h"
#include "Shared_Tools/BurnerImp/BurnPlugin.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

#include <filesystem>
#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

TEST(BurnOutputTest, TimesDecideWhatIsUpToDate) {
    const TempFolder folder;
    folder.Write("fin/a.txt", "a");
    const int64_t time = OSFile::GetWriteTime(folder.Path("fin/a.txt").c_str());
    EXPECT_EQ(GetNewestTime({folder.Path("fin/a.txt")}), time);
    EXPECT_EQ(GetNewestTime({folder.Path("fin/a.txt"), folder.Path("missing")}), std::numeric_limits<int64_t>::max());
    BurnSource source;
    source.finalFolder = folder.Path("fin");
    EXPECT_TRUE(AreOutputsNewer(source, {"DATA:a.txt"}, time - 1));
    EXPECT_FALSE(AreOutputsNewer(source, {"DATA:a.txt"}, time)); // the input may have been written after it
    EXPECT_FALSE(AreOutputsNewer(source, {"DATA:a.txt", "DATA:missing"}, time - 1));
}

TEST(BurnOutputTest, AFileThatGetsShorterIsntCopied) {
    const TempFolder folder;
    folder.Write("a.txt", std::string(3u << 20, 'a')); // in several pieces
    struct : RamStream {
        uint32_t Write(const void* pSource, uint32_t size) override {
            std::filesystem::resize_file(file, 1);
            return RamStream::Write(pSource, size);
        }
        std::string file;
    } output;
    output.Create(64, ByteStream::Mode_Write);
    output.file = folder.Native("a.txt");
    BurnSource source;
    source.file = folder.Path("a.txt");
    ByteStream* const outputs[] = {&output};
    try {
        GetCopyPlugin().Burn(source, {}, outputs);
        ADD_FAILURE();
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "can't be copied: it got shorter while it was read; burn it again once it is whole");
    }
}

} // namespace
