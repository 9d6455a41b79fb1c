// Entering, finding and purging resources: the cost of each has to stay flat however many there are.
#include "Shared/Cross/Assist/Inventory.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

class Thing : public Inv::NamedResource {
public:
    static Inv::ResourceTypeInfo& GetTypeInfo();
};

class ThingTypeInfo : public Inv::ResourceTypeInfo {
public:
    const char* GetTypeName() const override { return "Thing"; }
    std::unique_ptr<Inv::NamedResource> CreateDefault(const char*) override { return nullptr; }
    std::unique_ptr<Inv::NamedResource> Load(const char*) override { return std::make_unique<Thing>(); }
    void Report(Inv::DebugToolDumpInfo&, const Inv::Resource&, const char*, const char*, uint32_t) const override {}
};

Inv::ResourceTypeInfo& Thing::GetTypeInfo() {
    static ThingTypeInfo s_Info;
    return s_Info;
}

std::vector<std::string> MakeNames(int64_t count) {
    std::vector<std::string> names;
    for (int64_t i = 0; i < count; ++i)
        names.push_back("art/models/vehicle_part_" + std::to_string(i));
    return names;
}

void FillAndPurge(benchmark::State& state) {
    const std::vector<std::string> names = MakeNames(state.range(0));
    for (auto _ : state) {
        Inv::Initialize();
        for (const std::string& name : names)
            benchmark::DoNotOptimize(Inv::Get(name.c_str(), Thing::GetTypeInfo()));
        Inv::Shutdown();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Find(benchmark::State& state) {
    const std::vector<std::string> names = MakeNames(state.range(0));
    Inv::Initialize();
    for (const std::string& name : names)
        Inv::Get(name.c_str(), Thing::GetTypeInfo());
    for (auto _ : state)
        for (const std::string& name : names)
            benchmark::DoNotOptimize(Inv::Find(name.c_str(), Thing::GetTypeInfo()));
    Inv::Shutdown();
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(FillAndPurge)->Arg(100)->Arg(10000)->Arg(100000);
BENCHMARK(Find)->Arg(100)->Arg(10000)->Arg(100000);
