#include "Shared/Cross/Debug/StackTrace.h"

#include "Tests/Shared/Cross/Debug/ReportCapture.h"

#include <gtest/gtest.h>

namespace {

// What stands behind a call keeps it from becoming a jump, which would leave no frame.
[[gnu::noinline]] void CaptureHere(StackTrace& trace, uint32_t skip) {
    dbCaptureStack(trace, skip);
    asm volatile("");
}
constexpr uint32_t s_CaptureLine = __LINE__ - 3;

} // namespace

TEST(StackTrace, StartsWithTheCallerOrFurtherOut) {
    StackTrace trace;
    CaptureHere(trace, 0);
    ASSERT_GT(trace.count, 2u);
    StackFrame frame;
    ASSERT_TRUE(dbResolveFrame(trace.addresses[0], frame));
    EXPECT_NE(frame.function.find("CaptureHere"), std::string::npos);
    EXPECT_EQ(frame.module, "Tests_Debug");
    EXPECT_TRUE(frame.file.ends_with("StackTraceTest.cpp")) << frame.file;
    EXPECT_EQ(frame.line, s_CaptureLine);
    CaptureHere(trace, 1);
    ASSERT_TRUE(dbResolveFrame(trace.addresses[0], frame));
    EXPECT_NE(frame.function.find("TestBody"), std::string::npos);
}

TEST(StackTrace, FrameLines) {
    const void* pAddress = reinterpret_cast<const void*>(0xAB12CD);
    EXPECT_EQ(dbFormatFrame(pAddress, {"lib.so", "Run()", "src/run.cpp", 7}),
              "0x0000000000AB12CD: src/run.cpp                         Ln    7 (Run())");
    EXPECT_EQ(dbFormatFrame(pAddress, {"lib.so", "Run()", "", 0}),
              "0x0000000000AB12CD: lib.so                                      (Run())");
}
