// A whole export of a static scene, from the call to the file, as the host makes it. What the host needs for handing
// out its meshes is in it.

#include <algorithm>
#include <filesystem>

#include <benchmark/benchmark.h>

#include "Bench/Shared_Tools/PVXExport/GridMesh.h"
#include "Host/Scene/Build.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/PVXExport.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"

namespace {

constexpr int s_MeshLimit = 10000; // positions; larger scenes have more meshes

int s_Module;

void Export(benchmark::State& state, int positionsPerMesh, bool smooth) {
    const auto handle = reinterpret_cast<HINSTANCE>(&s_Module);
    PVXUtil::SetDLLInstance(handle);
    RegisterModuleResources(handle);

    scene::Scene scene;
    Mtl& material = scene.Make<scene::StandardMaterial>("Paint");
    int64_t positions = 0;
    while (positions < state.range(0)) {
        const int left = static_cast<int>(std::min<int64_t>(state.range(0) - positions, positionsPerMesh));
        Mesh mesh = MakeGridMesh(left, smooth);
        positions += mesh.numVerts;
        scene::AddMesh(scene, "Mesh" + std::to_string(positions), std::move(mesh), &material);
    }
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "pvxexport-bench" / "REFERENCE";
    std::filesystem::create_directories(folder);
    std::string path = "Z:" + (folder / "REF.pvx").string();
    std::ranges::replace(path, '/', '\\');

    for (auto _ : state) {
        PVXExport exporter;
        if (exporter.DoExport(path.c_str(), nullptr, &scene, true) != 1)
            state.SkipWithError("the export failed");
    }
    state.counters["per_vertex"] = benchmark::Counter(
        static_cast<double>(positions), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    std::filesystem::remove_all(folder.parent_path());
}

BENCHMARK_CAPTURE(Export, smooth, s_MeshLimit, true)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(Export, flat, s_MeshLimit, false)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(Export, smallMeshes, 9, true)
    ->Arg(900)
    ->Arg(9000)
    ->Arg(90000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace
