// Interning and look-up of names against the standard's hash set, for as many names as a big scene's project has.
#include "Shared/Cross/Util/Dictionary.h"

#include <benchmark/benchmark.h>

#include <string>
#include <unordered_set>
#include <vector>

namespace {

std::vector<std::string> MakeNames(int64_t count) {
    std::vector<std::string> names;
    for (int64_t i = 0; i < count; ++i)
        names.push_back("art/models/vehicle_bone_" + std::to_string(i));
    return names;
}

void Intern(benchmark::State& state) {
    const std::vector<std::string> names = MakeNames(state.range(0));
    for (auto _ : state) {
        Dictionary dictionary(true);
        Dictionary::Key key;
        for (const std::string& name : names)
            dictionary.Intern(key, name.c_str());
        benchmark::DoNotOptimize(dictionary.GetCount());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Every insertion is followed by a look-up, as when a file's names meet those of a skeleton.
void InternAndFind(benchmark::State& state) {
    const std::vector<std::string> names = MakeNames(state.range(0));
    for (auto _ : state) {
        Dictionary dictionary(true);
        Dictionary::Key key;
        for (const std::string& name : names) {
            dictionary.Intern(key, name.c_str());
            benchmark::DoNotOptimize(dictionary.Find(names[0].c_str(), key));
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Find(benchmark::State& state) {
    const std::vector<std::string> names = MakeNames(state.range(0));
    Dictionary dictionary(true);
    Dictionary::Key key;
    for (const std::string& name : names)
        dictionary.Intern(key, name.c_str());
    for (auto _ : state)
        for (const std::string& name : names)
            benchmark::DoNotOptimize(dictionary.Find(name.c_str(), key));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void StandardInsert(benchmark::State& state) {
    const std::vector<std::string> names = MakeNames(state.range(0));
    for (auto _ : state) {
        std::unordered_set<std::string> set;
        for (const std::string& name : names)
            set.insert(name);
        benchmark::DoNotOptimize(set.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void StandardFind(benchmark::State& state) {
    const std::vector<std::string> names = MakeNames(state.range(0));
    const std::unordered_set<std::string> set(names.begin(), names.end());
    for (auto _ : state)
        for (const std::string& name : names)
            benchmark::DoNotOptimize(set.find(name));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(Intern)->Arg(1000)->Arg(100000);
BENCHMARK(InternAndFind)->Arg(1000)->Arg(100000);
BENCHMARK(Find)->Arg(1000)->Arg(100000);
BENCHMARK(StandardInsert)->Arg(1000)->Arg(100000);
BENCHMARK(StandardFind)->Arg(1000)->Arg(100000);
