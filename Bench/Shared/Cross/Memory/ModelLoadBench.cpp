#include "Shared/Cross/Memory/MMPool.h"

#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

// The pools against malloc on what loading a model asks for: names and nodes by the thousand, key streams, now and
// then the data of a mesh, and short-lived scratch blocks in between; at the end all of it goes, mostly in the order in
// which it came. Every block is written to once, as a load does.

namespace {

struct Step {
    uint32_t size;  // 0 frees
    uint32_t index; // of the block
};

struct Pattern {
    std::vector<Step> steps;
    uint32_t blocks = 0;
};

class PatternMaker {
public:
    Pattern Make(uint32_t nodes) {
        for (uint32_t node = 0; node < nodes; ++node)
            AddNode(node);
        for (const uint32_t index : m_Live)
            m_Pattern.steps.push_back({0, index});
        return std::move(m_Pattern);
    }

private:
    uint32_t Pick(uint32_t low, uint32_t high) { return low + static_cast<uint32_t>(m_Random() % (high - low + 1)); }

    uint32_t Alloc(uint32_t size) {
        m_Pattern.steps.push_back({size, m_Pattern.blocks});
        return m_Pattern.blocks++;
    }

    void AddNode(uint32_t node) {
        const uint32_t scratch = Alloc(Pick(64, 260)); // a path while it is resolved
        m_Live.push_back(Alloc(Pick(6, 40)));          // name
        m_Live.push_back(Alloc(48));                   // map node
        m_Live.push_back(Alloc(40));                   // resource
        m_Live.push_back(Alloc(104));                  // bone, or shader parameter block
        for (uint32_t stream = Pick(0, 4); stream > 0; --stream) {
            m_Live.push_back(Alloc(32));
            m_Live.push_back(Alloc(16 * Pick(1, 60))); // keys
        }
        if (node % 50 == 0)
            m_Live.push_back(Alloc(Pick(5000, 60000))); // vertices of a mesh
        m_Pattern.steps.push_back({0, scratch});
    }

    std::mt19937 m_Random{1};
    Pattern m_Pattern;
    std::vector<uint32_t> m_Live;
};

template <class AllocFunction, class FreeFunction>
void Play(const Pattern& pattern, std::vector<void*>& blocks, AllocFunction alloc, FreeFunction free) {
    for (const Step& step : pattern.steps)
        if (step.size > 0) {
            blocks[step.index] = alloc(step.size);
            memset(blocks[step.index], 1, step.size < 64 ? step.size : 64);
        } else {
            free(blocks[step.index]);
        }
}

template <class AllocFunction, class FreeFunction>
void Run(benchmark::State& state, AllocFunction alloc, FreeFunction free) {
    const Pattern pattern = PatternMaker().Make(static_cast<uint32_t>(state.range(0)));
    std::vector<void*> blocks(pattern.blocks);
    for (auto _ : state)
        Play(pattern, blocks, alloc, free);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * pattern.blocks);
}

void Malloc(benchmark::State& state) {
    Run(
        state, [](size_t size) { return malloc(size); }, [](void* pBlock) { free(pBlock); });
}

void RunPool(benchmark::State& state, MMPoolKind kind, uint32_t flags) {
    MMPoolBase& pool = *MMPoolCreate("ModelLoad", kind, 1, flags);
    Run(
        state, [&](size_t size) { return MMAlloc(pool, size); }, [&](void* pBlock) { MMFree(pool, pBlock); });
    MMPoolDestroy(&pool);
}

void Heap(benchmark::State& state) { RunPool(state, MMPoolKind::Heap, MMPoolFlag_None); }
void Small(benchmark::State& state) { RunPool(state, MMPoolKind::Small, MMPoolFlag_None); }
void SmallNoLock(benchmark::State& state) { RunPool(state, MMPoolKind::Small, MMPoolFlag_NoLock); }
void Region(benchmark::State& state) { RunPool(state, MMPoolKind::Region, MMPoolFlag_None); }
void RegionNoLock(benchmark::State& state) { RunPool(state, MMPoolKind::Region, MMPoolFlag_NoLock); }

// What a region is for: nobody frees block by block.
void RegionReset(benchmark::State& state) {
    MMPoolBase& pool = *MMPoolCreate("ModelLoad", MMPoolKind::Region, 1);
    const Pattern pattern = PatternMaker().Make(static_cast<uint32_t>(state.range(0)));
    std::vector<void*> blocks(pattern.blocks);
    for (auto _ : state) {
        Play(
            pattern, blocks, [&](size_t size) { return MMAlloc(pool, size); }, [](void*) {});
        MMPoolReset(pool);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * pattern.blocks);
    MMPoolDestroy(&pool);
}

BENCHMARK(Malloc)->Arg(200)->Arg(20000);
BENCHMARK(Heap)->Arg(200)->Arg(20000);
BENCHMARK(Small)->Arg(200)->Arg(20000);
BENCHMARK(SmallNoLock)->Arg(200)->Arg(20000);
BENCHMARK(Region)->Arg(200)->Arg(20000);
BENCHMARK(RegionNoLock)->Arg(200)->Arg(20000);
BENCHMARK(RegionReset)->Arg(200)->Arg(20000);

} // namespace
