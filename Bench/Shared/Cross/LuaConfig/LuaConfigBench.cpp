#include <benchmark/benchmark.h>

#include "Shared/Cross/FileSystem/RamStream.h"
#include "Shared/Cross/LuaConfig/LuaConfig.h"
#include "Shared/Cross/LuaConfig/LuaConfigSave.h"

namespace {

// A state's price, which every burn script pays.
void MakeState(benchmark::State& state) {
    for (auto _ : state)
        LuaConfig config("bench");
}
BENCHMARK(MakeState);

// Entries with keys in brackets; loading and saving take time in proportion to them.
std::string MakeScript(int64_t entries) {
    std::string text = "t = {\n";
    for (int64_t i = 0; i < entries; ++i)
        text += "\tkey" + std::to_string(i) + " = { \"name\", " + std::to_string(i) + ".5, true },\n";
    return text + "}\n";
}

void LoadScript(benchmark::State& state) {
    const std::string text = MakeScript(state.range(0));
    for (auto _ : state) {
        LuaConfig config("bench");
        benchmark::DoNotOptimize(config.RunText(text, "bench"));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(LoadScript)->Arg(100)->Arg(1000)->Arg(10000);

void SaveScript(benchmark::State& state) {
    LuaConfig config("bench");
    config.RunText(MakeScript(state.range(0)), "bench");
    for (auto _ : state) {
        RamStream stream;
        stream.Create(4096, ByteStream::Mode_Write);
        benchmark::DoNotOptimize(LuaConfigSave::SaveToStream(config, true, true, stream));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(SaveScript)->Arg(100)->Arg(1000)->Arg(10000);

// A script's loop, with the limits looked at.
void RunLoop(benchmark::State& state) {
    LuaConfig config("bench");
    for (auto _ : state)
        config.RunCommand("local x = 0 for i = 1, 100000 do x = x + i end");
    state.SetItemsProcessed(state.iterations() * 100000);
}
BENCHMARK(RunLoop);

} // namespace
