#include "Shared/Cross/Memory/MMPool.h"

#include "Shared/Cross/Memory/MMPoolBase.h"
#include "Tests/Shared/Cross/Memory/PoolTesting.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Keeps the compiler from leaving out an allocation that it sees the end of.
template <class T>
T* Keep(T* pBlock) {
    asm volatile("" : "+r"(pBlock));
    return pBlock;
}

bool IsPools(const void* pBlock) { return MMPoolDefault().Owns(pBlock); }

TEST(GlobalPools, AllWaysLeadToDefault) {
    char* const pText = Keep(strdup("text"));
    void* const pBytes = Keep(malloc(100));
    void* const pZeroes = Keep(calloc(10, 10));
    const std::unique_ptr<int> pObject(Keep(new int));
    EXPECT_TRUE(IsPools(pText) && IsPools(pBytes) && IsPools(pZeroes) && IsPools(pObject.get()));
    EXPECT_EQ(malloc_usable_size(pBytes), 100u);
    EXPECT_TRUE(static_cast<char*>(pZeroes)[99] == 0);
    EXPECT_FATAL(MMFree(MMPoolDefault(), pBytes), "of kind 2 freed by kind 14");
    free(pText);
    free(pBytes);
    free(pZeroes);
    free(Keep(malloc(0)));
}

TEST(GlobalPools, WhatAPoolCantServeIsTheRuntimes) {
    char* pBlock = static_cast<char*>(Keep(malloc(100)));
    strcpy(pBlock, "contents");
    pBlock = static_cast<char*>(realloc(pBlock, s_MMSizeLimit + 1));
    ASSERT_NE(pBlock, nullptr);
    EXPECT_FALSE(IsPools(pBlock));
    EXPECT_STREQ(pBlock, "contents");
    pBlock = static_cast<char*>(realloc(pBlock, 200));
    EXPECT_STREQ(pBlock, "contents");
    EXPECT_GE(malloc_usable_size(pBlock), 200u);
    free(pBlock);
    void* const pAligned = Keep(aligned_alloc(256, 1000));
    EXPECT_EQ(reinterpret_cast<uintptr_t>(pAligned) % 256, 0u);
    free(pAligned);
    void* pOther = nullptr;
    EXPECT_EQ(posix_memalign(&pOther, 3, 10), EINVAL);
    EXPECT_EQ(posix_memalign(&pOther, 8, 10), 0);
    free(pOther);
    // More than the address space has.
    volatile size_t tooMuch = SIZE_MAX / 2 - 100;
    EXPECT_EQ(Keep(malloc(tooMuch)), nullptr);
    EXPECT_EQ(Keep(calloc(tooMuch, 4)), nullptr);
}

TEST(GlobalPools, AChildOfForkCanAllocate) {
    const pid_t child = fork();
    if (child == 0)
        _exit(IsPools(Keep(new int)) ? 0 : 1);
    int status = 1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

} // namespace
