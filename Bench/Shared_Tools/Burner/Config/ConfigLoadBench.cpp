#include "Shared_Tools/Burner/Config/ConfigLoad.h"

#include <benchmark/benchmark.h>

#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

namespace {

// A file whose chain has a base and that many folders below it.
void LoadChain(benchmark::State& state) {
    const TempFolder folder;
    folder.Write("pipeline.ini", "[project:Bench]\r\nDataSource=s\r\nDataSourceShared=s\r\nDataBurn=b\r\n"
                                 "DataIntermediate=i\r\nDataGeneric=generic\r\nDataFinal=f\r\nDataPreview=p\r\n"
                                 "LocaleFolder=l\r\nAttrLoc=a\r\nParent=\r\n");
    folder.Write("generic/_default.burn",
                 "burn_version = 1 burn_targets = { { name = 'm', targets = { { target = 't', destination = 'DATA:', "
                 "plugin = 'model' } } } } burn_params = { { name = 'm', targets = { { target = 't', params = { { 'a', "
                 "'1' } } } } } }");
    std::string place = "generic";
    for (int64_t i = 0; i < state.range(0); ++i) {
        place += "/level" + std::to_string(i);
        folder.Write(place + "/_default.burn", "burn_params = { { name = 'm', targets = { { target = 't', params = { { "
                                               "'a', '" +
                                                   std::to_string(i) + "' } } } } } }");
    }
    folder.Write(place + "/x.pvx", "");
    const std::string file = folder.Path(place + "/x.pvx");
    if (Pipeline::Initialize(folder.Path("pipeline.ini").c_str()) != Pipeline::Result_Ok) {
        state.SkipWithError("no pipeline");
        return;
    }
    ConfigLoad loader;
    for (auto _ : state) {
        BurnerConfig config;
        BurnerMessageList messages;
        if (!loader.LoadConfig(file.c_str(), config, messages))
            state.SkipWithError("not loaded");
    }
    Pipeline::Shutdown();
}
BENCHMARK(LoadChain)->Arg(0)->Arg(1)->Arg(5);

} // namespace
