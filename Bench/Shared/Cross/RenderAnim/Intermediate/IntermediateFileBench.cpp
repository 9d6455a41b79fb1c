// What a model file costs to write and to read, in memory: by the vertex, and by the small mesh.
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/FileSystem/ByteStream.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"

namespace {

// A file as the system's cache would have it, of any size.
class BlockStream : public ByteStream {
public:
    explicit BlockStream(Mode mode) { SetMode(mode); }
    uint32_t Read(void* pDest, uint32_t size) override {
        const uint32_t count = std::min(size, GetLength() - m_Pos);
        std::memcpy(pDest, m_Bytes.data() + m_Pos, count);
        m_Pos += count;
        return count;
    }
    uint32_t Write(const void* pSource, uint32_t size) override {
        if (m_Bytes.size() < size_t{m_Pos} + size)
            m_Bytes.resize(size_t{m_Pos} + size);
        std::memcpy(m_Bytes.data() + m_Pos, pSource, size);
        m_Pos += size;
        return size;
    }
    bool Flush() override { return true; }
    bool Seek(uint32_t pos) override {
        m_Pos = pos;
        return true;
    }
    uint32_t GetPos() override { return m_Pos; }
    uint32_t GetLength() override { return static_cast<uint32_t>(m_Bytes.size()); }

private:
    std::vector<char> m_Bytes;
    uint32_t m_Pos = 0;
};

// What models stand on, for one benchmark.
class Services {
public:
    Services() {
        gz::Start({.name = "Null"});
        Inv::Initialize();
    }
    ~Services() {
        Inv::Shutdown();
        gz::Stop();
    }
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;
};

MeshRef MakeMesh(const std::string& name, const ShaderRef& shader, uint32_t vertexCount) {
    auto pMesh = std::make_unique<ra::Mesh>();
    pMesh->SetName(name.c_str());
    std::unique_ptr<gz::VertexSet> pVertices = gz::GetDevice()->MakeVertexSet();
    pVertices->CreateFrom(0x25, vertexCount, {}, 2);
    std::unique_ptr<gz::PrimSet> pSet = gz::GetDevice()->MakePrimSet(*pVertices, shader->GetDeviceShader(), 2);
    pSet->SetUp(0, vertexCount * 6, gz::PrimKind_TriangleList); // two triangles a vertex, as closed meshes have
    pMesh->SetShaderCount(1);
    pMesh->SetShader(0, shader);
    pMesh->SetVertexSet(ra::Mesh::Poly_High, std::move(pVertices));
    pMesh->SetPrimSet(0, ra::Mesh::Poly_High, std::move(pSet));
    MeshRef mesh;
    mesh.Set(std::move(pMesh));
    return mesh;
}

std::unique_ptr<RenderModel> MakeModel(uint32_t meshCount, uint32_t vertexCount) {
    std::unique_ptr<Shader> pShader = Shader::Create();
    pShader->SetName("shader");
    ShaderRef shader;
    shader.Set(std::move(pShader));
    auto pGroup = std::make_unique<ra::MeshGroup>();
    pGroup->SetMeshCount(meshCount);
    for (uint32_t i = 0; i < meshCount; ++i) {
        const MeshRef mesh = MakeMesh("mesh" + std::to_string(i), shader, vertexCount);
        pGroup->SetMesh(i, mesh);
        pGroup->SetMeshName(i, mesh->GetNameKey());
    }
    auto pModel = std::make_unique<RenderModel>();
    pModel->SetName("model");
    pModel->SetMeshGroup(std::move(pGroup));
    return pModel;
}

void SetCounters(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0) * state.range(1)); // vertices
    state.counters["s/mesh"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                                                  benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_Write(benchmark::State& state) {
    const Services services;
    const auto pModel = MakeModel(static_cast<uint32_t>(state.range(0)), static_cast<uint32_t>(state.range(1)));
    BlockStream stream(ByteStream::Mode_Write);
    for (auto _ : state) {
        stream.Seek(0);
        ra::WriteIntermediate(stream, *pModel, {});
    }
    SetCounters(state);
}

void BM_Read(benchmark::State& state) {
    const Services services;
    BlockStream stream(ByteStream::Mode_Write);
    ra::WriteIntermediate(stream,
                          *MakeModel(static_cast<uint32_t>(state.range(0)), static_cast<uint32_t>(state.range(1))), {});
    stream.SetMode(ByteStream::Mode_Read);
    for (auto _ : state) {
        Inv::PurgeUnreferenced();
        stream.Seek(0);
        benchmark::DoNotOptimize(ra::ReadIntermediate(stream));
    }
    SetCounters(state);
}

void Sizes(benchmark::internal::Benchmark* pBenchmark) {
    pBenchmark->ArgNames({"meshes", "vertices"});
    for (const auto& [meshes, vertices] : {std::pair(1, 100), {1, 10'000}, {16, 65'535}, {1'000, 9}, {10'000, 9}})
        pBenchmark->Args({meshes, vertices});
}

BENCHMARK(BM_Write)->Apply(Sizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Read)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

} // namespace
