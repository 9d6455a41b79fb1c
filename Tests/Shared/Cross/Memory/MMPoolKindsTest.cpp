#include "Shared/Cross/Memory/MMPoolInfo.h"
#include "Shared/Cross/Memory/MMPoolRegion.h"
#include "Shared/Cross/Memory/MMPoolSmall.h"
#include "Shared/Cross/Memory/MMPoolVM.h"
#include "Shared/Cross/Memory/MMStackTable.h"
#include "Tests/Shared/Cross/Memory/PoolTesting.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <random>

#include <gmock/gmock.h>

namespace {

// Every kind, under any of its wrappings, keeps what its users write, whatever they do in between.
struct Factory {
    const char* pName;
    std::function<MMPoolBase*()> make;
};

const Factory s_Factories[] = {
    {"Heap", [] { return MMNewPool<MMPoolHeap>("P", 0u); }},
    {"Small", [] { return MMNewPool<MMPoolSmall>("P", 0u); }},
    {"Region", [] { return MMNewPool<MMPoolRegion>("P", 3u, 0u); }},
    {"OverWrite", [] { return MMNewPool<MMPoolVM>("P", MMPoolVM::GetOverWriteMode(), 0u); }},
    {"UnderWrite", [] { return MMNewPool<MMPoolVM>("P", MMPoolVM::GetUnderWriteMode(), 0u); }},
    {"InfoOfSmall", [] { return MMNewPool<MMPoolInfo>(*MMNewPool<MMPoolSmall>("P", 0u)); }},
    {"NoLockSmall", [] { return MMNewPool<MMPoolSmall>("P", MMPoolFlag_NoLock); }},
};

class AnyPool : public testing::TestWithParam<Factory> {
protected:
    struct Block {
        uint8_t* pBytes;
        size_t size;
        uint8_t mark;

        void Fill() const { memset(pBytes, mark, size); }
        bool IsKept(size_t count) const {
            return std::all_of(pBytes, pBytes + std::min(count, size), [this](uint8_t byte) { return byte == mark; });
        }
    };
};

TEST_P(AnyPool, KeepsWhatIsWritten) {
    MMPoolBase& pool = *GetParam().make();
    std::mt19937 random(7);
    const auto pick = [&](size_t count) { return random() % count; };
    std::vector<Block> blocks;
    for (int step = 0; step < 6000; ++step) {
        const size_t action = blocks.empty() ? 0 : pick(5);
        const size_t size = 1 + (pick(10) == 0 ? pick(40000) : pick(200));
        if (action < 2) {
            blocks.push_back({static_cast<uint8_t*>(MMAlloc(pool, size)), size, static_cast<uint8_t>(step)});
            blocks.back().Fill();
            continue;
        }
        std::swap(blocks[pick(blocks.size())], blocks.back());
        Block& block = blocks.back();
        ASSERT_TRUE(block.IsKept(block.size));
        if (action == 2) {
            block.pBytes = static_cast<uint8_t*>(MMRealloc(pool, block.pBytes, size));
            ASSERT_TRUE(block.IsKept(size));
            block.size = size;
            block.Fill();
        } else {
            MMFree(pool, block.pBytes);
            blocks.pop_back();
        }
    }
    const MMPoolCounts counts = MMPoolGetCounts(pool);
    EXPECT_TRUE(counts.liveCount == blocks.size() && counts.peakCount > counts.liveCount);
    EXPECT_GE(counts.peakMemory, counts.usedMemory);
    for (const Block& block : blocks) {
        ASSERT_TRUE(block.IsKept(block.size));
        MMFree(pool, block.pBytes);
    }
    EXPECT_EQ(pool.GetLiveCount() + pool.GetUsedMemory(), 0u);
    pool.Destroy();
}

TEST_P(AnyPool, ResetGivesEverythingBack) {
    MMPoolBase& pool = *GetParam().make();
    for (int round = 0; round < 3; ++round) {
        for (size_t size = 1; size < 30000; size += 97)
            memset(MMAlloc(pool, size), 1, size);
        MMPoolReset(pool);
        EXPECT_EQ(pool.GetLiveCount(), 0u);
        EXPECT_EQ(pool.GetUsedMemory(), 0u);
    }
    pool.Destroy();
}

TEST_P(AnyPool, ObjectsAreAligned) {
    MMPoolBase& pool = *GetParam().make();
    for (const size_t alignment : {4, 8, 16})
        for (size_t count = 1; count < 20; ++count)
            EXPECT_EQ(reinterpret_cast<uintptr_t>(MMAlloc(pool, count * alignment)) % alignment, 0u);
    pool.Destroy();
}

INSTANTIATE_TEST_SUITE_P(Kinds, AnyPool, testing::ValuesIn(s_Factories),
                         [](const auto& parameter) { return parameter.param.pName; });

TEST(MMPoolSmall, SlotsAreRoundedUpToFourBytes) {
    EXPECT_EQ(MMPoolSmall::GetClass(128), 31u);
    TestPool pool(MMPoolKind::Small);
    char* const pFirst = static_cast<char*>(MMAlloc(pool, 12));
    EXPECT_EQ(MMAlloc(pool, 9), pFirst + 12);
    EXPECT_EQ(pool->GetSize(MMAlloc(pool, 125)), 128u);
    EXPECT_EQ(pool->GetSize(MMAlloc(pool, 129)), 129u) << "not in a slot";
}

TEST(MMPoolSmall, RoomInAnyPageIsUsedBeforeANewPage) {
    constexpr size_t s_SlotsInPage = 511;
    TestPool pool(MMPoolKind::Small);
    std::vector<void*> freed;
    for (size_t i = 0; i < 10 * s_SlotsInPage; ++i)
        if (void* const pBlock = MMAlloc(pool, 128); i % 100 == 0)
            freed.push_back(pBlock);
    for (void* const pBlock : freed)
        MMFree(pool, pBlock);
    std::vector<void*> again(freed.size());
    std::ranges::generate(again, [&] { return MMAlloc(pool, 128); });
    EXPECT_THAT(again, testing::UnorderedElementsAreArray(freed));
}

TEST(MMPoolSmall, TellsWrongPointers) {
    TestPool pool(MMPoolKind::Small);
    char* const pBlock = static_cast<char*>(MMAlloc(pool, 16));
    EXPECT_FATAL(MMFree(pool, pBlock + 4), "no block starts at");
    EXPECT_FATAL(MMFree(pool, pBlock + 16), "no block starts at"); // never handed out
    // What looks like a free slot's link is a user's business.
    const uint32_t link = 0xF4EE0000;
    memcpy(pBlock, &link, sizeof(link));
    MMFree(pool, pBlock);
    EXPECT_FATAL(
        {
            memset(pBlock, 0, 4);
            MMAlloc(pool, 16);
        },
        "was written to after it was freed");
}

TEST(MMPoolRegion, BumpsUpToAQuarterOfABlock) {
    TestPool pool(MMPoolKind::Region);
    const auto defaultCount = [] { return MMPoolGetCounts(MMPoolDefault()).liveCount; };
    const size_t before = defaultCount();
    char* const pFirst = static_cast<char*>(MMAlloc(pool, 16));
    void* const pBumped = MMAlloc(pool, 16384);
    const size_t between = defaultCount();
    MMFree(pool, MMAlloc(pool, 16385));
    const size_t after = defaultCount();
    EXPECT_EQ(pBumped, pFirst + 16);
    EXPECT_EQ(between, before);
    EXPECT_EQ(after, before + 1) << "comes back with the region";
}

TEST(MMPoolRegion, StartsAgainWhenAllIsFreed) {
    TestPool pool(MMPoolKind::Region);
    void* pStart = nullptr;
    for (int round = 0; round < 3; ++round) {
        std::vector<void*> blocks(40); // in seven of the region's
        std::ranges::generate(blocks, [&] { return MMAlloc(pool, 10000); });
        EXPECT_EQ(blocks.front(), round == 0 ? blocks.front() : pStart);
        pStart = blocks.front();
        for (void* const pBlock : blocks)
            MMFree(pool, pBlock);
        EXPECT_FATAL(MMFree(pool, pStart), "none of its kind is live");
    }
}

// Dies of the last statement, not of one before it.
#define EXPECT_TRAPPED(inside, beyond)                                                                                 \
    EXPECT_DEATH(                                                                                                      \
        {                                                                                                              \
            inside;                                                                                                    \
            fputs("inside is fine\n", stderr);                                                                         \
            beyond;                                                                                                    \
            _exit(0);                                                                                                  \
        },                                                                                                             \
        "inside is fine")

void Touch(volatile char* pBlock, size_t size) {
    pBlock[0] = 1;
    pBlock[size - 1] = 1;
}

TEST(MMPoolVM, TrapsWhatGoesBeyondABlockAndUseAfterFree) {
    for (const bool guardsEnd : {true, false}) {
        const auto& mode = guardsEnd ? MMPoolVM::GetOverWriteMode() : MMPoolVM::GetUnderWriteMode();
        MMPoolVM& pool = *MMNewPool<MMPoolVM>("Guarded", mode, 0u);
        for (const size_t size : {size_t{1}, size_t{13}, size_t{4072}, size_t{4073}, size_t{100000}}) {
            volatile char* const pBlock = static_cast<char*>(MMAlloc(pool, size));
            volatile char* const pBeyond = guardsEnd ? pBlock + size : pBlock - 1;
            EXPECT_TRAPPED(Touch(pBlock, size), *pBeyond = 1) << size;
            EXPECT_TRAPPED((void)0, (void)*pBeyond) << size;
            EXPECT_TRAPPED(MMFree(pool, const_cast<char*>(pBlock)), pBlock[0] = 1) << size;
            MMFree(pool, const_cast<char*>(pBlock));
            EXPECT_FATAL(MMFree(pool, const_cast<char*>(pBlock)), "no live block starts at");
        }
        pool.Destroy();
    }
}

TEST(MMPoolVM, BlocksOfManyArenas) {
    MMPoolVM& pool = *MMNewPool<MMPoolVM>("Guarded", MMPoolVM::GetOverWriteMode(), 0u);
    std::vector<void*> blocks;
    for (int i = 0; i < 1000; ++i)
        blocks.push_back(memset(MMAlloc(pool, 100), i, 100));
    EXPECT_EQ(std::ranges::adjacent_find(blocks), blocks.end());
    for (void* const pBlock : blocks)
        MMFree(pool, pBlock);
    EXPECT_FALSE(pool.Owns(blocks[0]));
    pool.Destroy();
}

class RecordedPool : public testing::Test {
protected:
    ~RecordedPool() override { m_Pool.Destroy(); }

    MMPoolInfo& m_Pool = *MMNewPool<MMPoolInfo>(*MMNewPool<MMPoolSmall>("Recorded", 0u));
};

[[gnu::noinline]] void* AllocateHere(MMPoolBase& pool, size_t size) {
    void* const pBlock = MMAlloc(pool, size);
    asm volatile(""); // no tail call: the frame has to stay
    return pBlock;
}

TEST_F(RecordedPool, KeepsARecordOfEachBlock) {
    std::vector<void*> blocks(3);
    for (void*& pBlock : blocks)
        pBlock = AllocateHere(m_Pool, 10);
    const MMPoolInfo::Record* const pFirst = m_Pool.FindRecord(blocks[0]);
    const MMPoolInfo::Record* const pLast = m_Pool.FindRecord(blocks[2]);
    ASSERT_TRUE(pFirst && pLast);
    EXPECT_EQ(pFirst->size, 10u);
    EXPECT_EQ(pFirst->kind, static_cast<uint32_t>(MMCall::PoolAlloc));
    EXPECT_LT(pFirst->number, pLast->number);
    EXPECT_EQ(pFirst->stack, pLast->stack) << "one stack, kept once";
    EXPECT_GE(MMStackTable::Get(pFirst->stack).size(), 2u);
    MMFree(m_Pool, blocks[0]);
    EXPECT_EQ(m_Pool.FindRecord(blocks[0]), nullptr);
    EXPECT_FATAL(MMFree(m_Pool, blocks[0]), "no live block starts at");
}

TEST_F(RecordedPool, GrowsPastItsFirstSize) {
    std::vector<void*> blocks;
    for (uint32_t i = 0; i < MMPoolInfo::s_Sizes[0] + 1; ++i)
        blocks.push_back(MMAlloc(m_Pool, 1 + i % 100));
    for (uint32_t i = 0; i < blocks.size(); i += 1000)
        EXPECT_EQ(m_Pool.GetSize(blocks[i]), 1 + i % 100);
    for (void* const pBlock : blocks)
        MMFree(m_Pool, pBlock);
    EXPECT_EQ(m_Pool.GetLiveCount(), 0u);
}

TEST(MMPoolInfo, PrintsItsPeaksAtTheEnd) {
    const OutputCapture capture;
    MMPoolInfo& pool = *MMNewPool<MMPoolInfo>(*MMNewPool<MMPoolHeap>("Recorded", 0u));
    MMFree(pool, MMAlloc(pool, 1500));
    pool.Destroy();
    EXPECT_EQ(capture.GetLines().at(0), "MemoryLib: (INFO) : Pool Recorded, max alloc 1, max memory 1500\n");
}

} // namespace
