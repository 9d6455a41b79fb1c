// A whole export, from the call to the file, as the host makes it. What the host needs for handing out its meshes and
// motion is in it.

#include <algorithm>
#include <filesystem>

#include <benchmark/benchmark.h>

#include "Bench/Shared_Tools/PVXExport/GridMesh.h"
#include "Host/Scene/Build.h"
#include "Host/Sdk/Core.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/PVXExport.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"

namespace {

constexpr int s_MeshLimit = 10000; // positions; larger scenes have more meshes

int s_Module;

// Exports to that file of a folder of its own; `items` is how many of what `counter` says the scene has.
void Run(benchmark::State& state, scene::Scene& scene, const char* pFile, const char* pCounter, int64_t items) {
    const auto handle = reinterpret_cast<HINSTANCE>(&s_Module);
    PVXUtil::SetDLLInstance(handle);
    RegisterModuleResources(handle);
    const std::filesystem::path native = std::filesystem::temp_directory_path() / "pvxexport-bench" / pFile;
    std::filesystem::create_directories(native.parent_path());
    std::string path = "Z:" + native.string();
    std::ranges::replace(path, '/', '\\');

    for (auto _ : state) {
        PVXExport exporter;
        if (exporter.DoExport(path.c_str(), nullptr, &scene, true) != 1)
            state.SkipWithError("the export failed");
    }
    state.counters[pCounter] = benchmark::Counter(
        static_cast<double>(items), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    std::filesystem::remove_all(native.parent_path());
}

void Export(benchmark::State& state, int positionsPerMesh, bool smooth) {
    scene::Scene scene;
    Mtl& material = scene.Make<scene::StandardMaterial>("Paint");
    int64_t positions = 0;
    while (positions < state.range(0)) {
        const int left = static_cast<int>(std::min<int64_t>(state.range(0) - positions, positionsPerMesh));
        Mesh mesh = MakeGridMesh(left, smooth);
        positions += mesh.numVerts;
        scene::AddMesh(scene, "Mesh" + std::to_string(positions), std::move(mesh), &material);
    }
    Run(state, scene, "REFERENCE/REF.pvx", "per_vertex", positions);
}

// As much work as a keyed track has to do at least: a rotation made anew for each time.
class TurnController : public scene::Controller {
public:
    scene::Affine Evaluate(TimeValue t) const override {
        return scene::ComposeTransform({1, 0, 0}, glm::dquat(1.0, 0.0, 1e-4 * t, 0.0), {1, 1, 1});
    }
    bool IsAnimated() const override { return true; }
};

// A chain of so many bones, over so many frames.
void ExportMotion(benchmark::State& state) {
    scene::Scene scene;
    scene.SetAnimRange({0, static_cast<TimeValue>(state.range(1) - 1) * GetTicksPerFrame()});
    scene::Node* pParent = nullptr;
    for (int64_t i = 0; i < state.range(0); ++i) {
        pParent = &scene::AddBone(scene, "Bone" + std::to_string(i), pParent);
        pParent->SetController(std::make_unique<TurnController>());
    }
    scene::AddMesh(scene, "Mesh", MakeGridMesh(9, true), &scene.Make<scene::StandardMaterial>("Paint"));
    Run(state, scene, "Run.pvx", "per_bone_and_frame", state.range(0) * state.range(1));
}

BENCHMARK(ExportMotion)
    ->Args({10, 300})
    ->Args({100, 300})
    ->Args({1000, 300})
    ->Args({100, 30})
    ->Args({100, 1000})
    ->Args({100, 10000})
    ->Unit(benchmark::kMillisecond);

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
