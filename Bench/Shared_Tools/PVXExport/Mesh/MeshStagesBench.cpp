// The steps of one mesh by themselves. The time per vertex is the host mesh's.

#include <benchmark/benchmark.h>

#include "Bench/Shared_Tools/PVXExport/GridMesh.h"
#include "Shared_Tools/PVXExport/Mesh/HostMesh.h"
#include "Shared_Tools/PVXExport/Mesh/MeshNormals.h"
#include "Shared_Tools/PVXExport/Mesh/PrimSetIndices.h"
#include "Shared_Tools/PVXExport/Mesh/VertexKeys.h"

namespace {

// The working form as the stages leave it one after the other.
struct Stages {
    explicit Stages(const benchmark::State& state, bool welded = true)
        : mesh(MakeGridMesh(static_cast<int>(state.range(0)), state.range(1) != 0, welded)) {}

    void ReadSurface() {
        used.assign(1, 0);
        HostMesh::ReadPositions(mesh, IdentityMatrix(), form);
        HostMesh::ReadFaces(mesh, {2, 1, 0}, used, form);
    }
    void ReadCoordinates() { coordinates.Read(mesh, {2, 1, 0}, mappings, used, form); }
    void BuildNormals() { normals.Build(form); }
    void UniquePositions() { uniquer.Run(form.cVertex, remap); }
    void BuildKeys() { keys.Build(form, {remap, {}}); }

    void Report(benchmark::State& state) const {
        state.counters["per_vertex"] =
            benchmark::Counter(static_cast<double>(mesh.numVerts),
                               benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    }

    Mesh mesh;
    MeshForm form;
    std::vector<uint8_t> used;
    std::vector<SlotMapping> mappings{1};
    TexCoordReader coordinates;
    NormalBuilder normals;
    Uniquer uniquer;
    std::vector<uint32_t> remap;
    VertexKeys keys;
};

void ReadSurface(benchmark::State& state) {
    Stages stages(state);
    for (auto _ : state)
        stages.ReadSurface();
    stages.Report(state);
}

void ReadCoordinates(benchmark::State& state) {
    Stages stages(state);
    stages.ReadSurface();
    for (auto _ : state)
        stages.ReadCoordinates();
    stages.Report(state);
}

void BuildNormals(benchmark::State& state) {
    Stages stages(state);
    stages.ReadSurface();
    for (auto _ : state)
        stages.BuildNormals();
    stages.Report(state);
}

void UniquePositions(benchmark::State& state) {
    Stages stages(state);
    stages.ReadSurface();
    const std::vector<glm::vec3> positions = stages.form.cVertex;
    for (auto _ : state) {
        stages.form.cVertex = positions;
        stages.UniquePositions();
    }
    stages.Report(state);
}

void BuildKeys(benchmark::State& state) {
    Stages stages(state);
    stages.ReadSurface();
    stages.ReadCoordinates();
    stages.BuildNormals();
    stages.UniquePositions();
    for (auto _ : state)
        stages.BuildKeys();
    stages.Report(state);
}

void WholeMesh(benchmark::State& state, bool welded) {
    Stages stages(state, welded);
    PrimSetIndices indices;
    for (auto _ : state) {
        stages.ReadSurface();
        stages.ReadCoordinates();
        stages.BuildNormals();
        stages.UniquePositions();
        stages.BuildKeys();
        indices.Build(stages.form.cFace, 1);
    }
    stages.Report(state);
}

// Positions, and whether the mesh is smooth. 10922 positions have the most faces that the host shows as one mesh.
void Sizes(benchmark::internal::Benchmark* pBenchmark) {
    for (const int positions : {9, 100, 1000, 10000})
        for (const int smooth : {1, 0})
            pBenchmark->Args({positions, smooth});
}

BENCHMARK(ReadSurface)->Apply(Sizes);
BENCHMARK(ReadCoordinates)->Apply(Sizes);
BENCHMARK(BuildNormals)->Apply(Sizes);
BENCHMARK(UniquePositions)->Apply(Sizes);
BENCHMARK(BuildKeys)->Apply(Sizes);
BENCHMARK_CAPTURE(WholeMesh, welded, true)->Apply(Sizes);
BENCHMARK_CAPTURE(WholeMesh, unwelded, false)->Args({100, 1})->Args({3600, 1})->Args({10000, 1});

} // namespace
