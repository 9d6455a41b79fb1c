#include "Shared/Cross/Memory/MMPool.h"

#include "Shared/Cross/Memory/MMAllocator.h"
#include "Shared/Cross/Memory/MMPoolHandle.h"
#include "Shared/Cross/Memory/MMPoolHeap.h"
#include "Shared/Cross/Memory/MMSystem.h"
#include "Tests/Shared/Cross/Memory/PoolTesting.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <thread>

namespace {

constexpr MMPoolKind s_AllKinds[] = {MMPoolKind::Heap, MMPoolKind::Small, MMPoolKind::Region, MMPoolKind::Tracking};

TEST(MMPool, DefaultPoolsStayAndNamesAreUnique) {
    EXPECT_EQ(MMPoolFind("Strings"), &MMPoolStrings());
    EXPECT_FATAL(MMPoolDestroy(&MMPoolDefault()), "Pool Default is a default pool");
    EXPECT_FATAL(MMPoolDestroy(&MMPoolStrings()), "Pool Strings is a default pool");
    const TestPool pool(MMPoolKind::Small);
    EXPECT_FATAL(MMPoolCreate("TestPool", MMPoolKind::Heap), "Pool TestPool, the name is taken");
    EXPECT_FATAL(MMPoolCreate(nullptr, MMPoolKind::Heap), "without a name");
    EXPECT_EQ(&MMPoolGet("TestPool"), MMPoolFind("TestPool"));
}

TEST(MMPool, DestroySaysWhatLeaks) {
    const OutputCapture capture;
    MMFree(*MMPoolCreate("Clean", MMPoolKind::Heap), nullptr);
    MMPoolDestroy(MMPoolFind("Clean"));
    MMPoolBase* const pLeaky = MMPoolCreate("Leaky", MMPoolKind::Small);
    MMAlloc(*pLeaky, 5);
    MMAlloc(*pLeaky, 500);
    MMPoolDestroy(pLeaky);
    EXPECT_EQ(capture.GetLines(), (std::vector<std::string>{"MemoryLib: (INFO) : Pool Clean\n",
                                                            "MemoryLib: (INFO) : Pool Leaky, Leaks detected (2)\n"}));
}

TEST(MMPool, BadHandlesAndSizesStop) {
    alignas(16) char nothing[sizeof(MMPoolHeap)] = {};
    EXPECT_FATAL(MMAlloc(*reinterpret_cast<MMPoolBase*>(nothing), 1), "is no pool");
    MMPoolBase* const pGone = MMPoolCreate("Gone", MMPoolKind::Region);
    MMPoolDestroy(pGone);
    EXPECT_FATAL(MMAlloc(*pGone, 1), "is no pool");
    TestPool pool(MMPoolKind::Heap);
    EXPECT_FATAL(pool->Close(); MMPoolGetCounts(pool), "Pool TestPool is closed");
    EXPECT_FATAL(MMAlloc(pool, 0), "allocation of no bytes");
    EXPECT_FATAL(MMAlloc(pool, s_MMSizeLimit), "allocation of 536870912 bytes");
}

TEST(MMPool, EachKindOfCallHasItsKindOfFreeing) {
    constexpr uint32_t s_Pairs[][2] = {{2, 12}, {3, 12}, {5, 14}, {6, 14}, {0, 10}, {1, 11}, {4, 13}, {7, 15}};
    for (const MMPoolKind kind : s_AllKinds) {
        TestPool pool(kind);
        for (const auto& [allocKind, freeKind] : s_Pairs) {
            AllocRequest request(24, static_cast<MMCall>(allocKind));
            void* const pBlock = MMRunAlloc(pool, request);
            const auto wrong = static_cast<MMCall>(freeKind == 15 ? 10 : freeKind + 1);
            EXPECT_FATAL(MMRunFree(pool, pBlock, wrong), "of kind|of free kind|none of its kind")
                << static_cast<uint32_t>(kind) << ' ' << allocKind;
            MMRunFree(pool, pBlock, static_cast<MMCall>(freeKind));
        }
        EXPECT_EQ(pool->GetLiveCount(), 0u);
    }
}

TEST(MMPool, BlocksThatArentLiveStop) {
    TestPool small(MMPoolKind::Small);
    void* const pBlock = MMAlloc(small, 8);
    MMFree(small, pBlock);
    EXPECT_FATAL(MMFree(small, pBlock), "is free");
    void* const pOther = MMAlloc(MMPoolStrings(), 8);
    EXPECT_FATAL(MMFree(MMPoolDefault(), pOther), "Pool Default, block .* isn't its own");
    EXPECT_FATAL(memset(static_cast<char*>(pOther) - 4, 0, 4);
                 MMFree(MMPoolStrings(), pOther), "its start was overwritten");
    MMFree(MMPoolStrings(), pOther);
}

TEST(MMPool, FillFlagMarksNewMemory) {
    TestPool pool(MMPoolKind::Heap, 0, MMPoolFlag_Fill);
    const MMTotals before = MMGetTotals();
    auto* pBlock = static_cast<uint32_t*>(MMAlloc(pool, 16));
    EXPECT_EQ(MMGetTotals().count, before.count + 1);
    EXPECT_EQ(MMGetTotals().bytes, before.bytes + 16);
    EXPECT_EQ(pBlock[0], 0xFEFEFEFEu);
    pBlock[3] = 7;
    pBlock = static_cast<uint32_t*>(MMRealloc(pool, pBlock, 64));
    EXPECT_EQ(pBlock[3], 7u);
    EXPECT_TRUE(std::all_of(pBlock + 4, pBlock + 16, [](uint32_t word) { return word == 0xFEFEFEFE; }));
    MMFree(pool, pBlock);
}

TEST(MMPool, ThreadsShareAPool) {
    TestPool small(MMPoolKind::Small);
    MMPoolBase& pool = small;
    const auto work = [&pool](char mark) {
        std::vector<char*> blocks;
        for (size_t i = 0; i < 20000; ++i) {
            const size_t size = 4 + i % 200;
            blocks.push_back(static_cast<char*>(memset(MMAlloc(pool, size), mark, size)));
            if (i % 3 != 0)
                continue;
            std::swap(blocks.back(), blocks[blocks.size() / 2]);
            EXPECT_EQ(blocks.back()[3], mark);
            MMFree(pool, blocks.back());
            blocks.pop_back();
        }
        for (char* const pBlock : blocks)
            MMFree(pool, pBlock);
    };
    {
        std::vector<std::jthread> threads;
        for (const char mark : {'a', 'b', 'c', 'd'})
            threads.emplace_back(work, mark);
    }
    EXPECT_EQ(MMPoolGetCounts(pool).liveCount, 0u);
}

TEST(MMPoolTracking, ItsMemoryIsDefaults) {
    TestPool pool(MMPoolKind::Tracking);
    const size_t before = MMPoolGetCounts(MMPoolDefault()).liveCount;
    void* const pBlock = MMAlloc(pool, 50);
    EXPECT_EQ(MMPoolGetCounts(MMPoolDefault()).liveCount, before + 1);
    EXPECT_EQ(MMPoolGetCounts(pool).usedMemory, 50u);
    EXPECT_FATAL(MMPoolReset(pool), "reset with 1 live blocks");
    MMFree(pool, pBlock);
    EXPECT_FATAL(MMFree(pool, pBlock), "freed when none is live");
}

TEST(MMPoolHandle, TheLastOneDestroysThePool) {
    MMPoolHandle outer;
    {
        const MMPoolHandle first(*MMPoolCreate("Held", MMPoolKind::Small));
        MMPoolHandle second = first;
        outer = second;
        second.Release();
        EXPECT_EQ(second.Get(), nullptr);
    }
    EXPECT_EQ(MMPoolFind("Held"), outer.Get());
    outer = MMPoolHandle();
    EXPECT_EQ(MMPoolFind("Held"), nullptr);
}

using NodePool = MMNamedPool<"TestNodes", MMPoolKind::Small>;

struct PooledNode : MMPooled<NodePool> {
    double value = 2.5;
};

struct Throwing {
    Throwing() { throw std::runtime_error("no"); }
};

TEST(MMAllocator, ContainersAndObjectsTakeTheirMemoryFromThePool) {
    const auto live = [] { return MMPoolGetCounts(NodePool::Get()).liveCount; };
    {
        std::map<int, int, std::less<>, MMAllocator<std::pair<const int, int>, NodePool>> map;
        for (int i = 0; i < 1000; ++i)
            map[i] = i;
        EXPECT_EQ(live(), 1000u);
        const std::unique_ptr<PooledNode> pNode(new PooledNode);
        const MMUnique<std::string, NodePool> pText = MMMakeUnique<std::string, NodePool>("text");
        EXPECT_EQ(live(), 1002u);
        EXPECT_THROW((MMMakeUnique<Throwing, NodePool>()), std::runtime_error);
        EXPECT_EQ(live(), 1002u);
    }
    EXPECT_EQ(live(), 0u);
}

TEST(MMAllocator, ASizeBeyondThePoolsThrows) {
    MMAllocator<double, NodePool> allocator;
    EXPECT_THROW(static_cast<void>(allocator.allocate(s_MMSizeLimit / sizeof(double))), std::bad_alloc);
    std::vector<char, MMAllocator<char, NodePool>> bytes;
    EXPECT_THROW(bytes.resize(s_MMSizeLimit), std::length_error);
}

} // namespace
