// What a final model costs to save and to load: one of 50 meshes, 100 bones, 20 clips and compressed textures, beside a
// plain read of the same file into one block: both once in fresh memory, as a tool loads a model, and again and again
// in the same. The file is in the system's cache. Loading counts its allocations.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include <benchmark/benchmark.h>

#include "Bench/Shared/Cross/RenderAnim/ModelServices.h"
#include "Bench/TimeInOwnProcess.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/RenderAnim/AnimList.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Final/FinalFile.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Texture.h"
#include "Shared/Cross/RenderAnim/TextureConvert.h"

namespace {

uint64_t s_Allocations = 0;

void* CountedAlloc(size_t size) {
    ++s_Allocations;
    void* pBlock = std::malloc(size);
    if (!pBlock)
        throw std::bad_alloc();
    return pBlock;
}

} // namespace

void* operator new(size_t size) { return CountedAlloc(size); }
void* operator new[](size_t size) { return CountedAlloc(size); }
void operator delete(void* pBlock) noexcept { std::free(pBlock); }
void operator delete[](void* pBlock) noexcept { std::free(pBlock); }
void operator delete(void* pBlock, size_t) noexcept { std::free(pBlock); }
void operator delete[](void* pBlock, size_t) noexcept { std::free(pBlock); }

namespace {

constexpr uint32_t s_MeshCount = 50;
constexpr uint32_t s_VertexCount = 1000;
constexpr int32_t s_BoneCount = 100;
constexpr int s_ClipCount = 20;
constexpr uint32_t s_KeyCount = 60; // two seconds at 30 frames a second
constexpr uint32_t s_TextureCount = 10;
constexpr char s_Path[] = "DATA:model.obm";

ShaderRef MakeShader(uint32_t index) {
    std::unique_ptr<Texture> pTexture = Image2Texture(Image::Create(IMAGETYPE_DXT5, 512, 512, 8));
    pTexture->SetName(("texture" + std::to_string(index)).c_str());
    TextureRef texture;
    texture.Set(std::move(pTexture));
    std::unique_ptr<Shader> pShader = Shader::Create();
    pShader->SetName(("shader" + std::to_string(index)).c_str());
    pShader->SetChannelTexture(0, texture);
    ShaderRef shader;
    shader.Set(std::move(pShader));
    return shader;
}

MeshRef MakeMesh(uint32_t index, const ShaderRef& shader) {
    auto pMesh = std::make_unique<ra::Mesh>();
    pMesh->SetName(("mesh" + std::to_string(index)).c_str());
    std::unique_ptr<gz::VertexSet> pVertices = gz::GetDevice()->MakeVertexSet();
    pVertices->CreateFrom(0x27, s_VertexCount, {}, 2);
    std::unique_ptr<gz::PrimSet> pSet = gz::GetDevice()->MakePrimSet(*pVertices, shader->GetDeviceShader(), 2);
    pSet->SetUp(0, s_VertexCount * 6, gz::PrimKind_TriangleList); // two triangles a vertex, as closed meshes have
    pMesh->SetShaderCount(1);
    pMesh->SetShader(0, shader);
    pMesh->SetVertexSet(ra::Mesh::Poly_High, std::move(pVertices));
    pMesh->SetPrimSet(0, ra::Mesh::Poly_High, std::move(pSet));
    pMesh->SetSkinnedTransformCount(4);
    for (uint32_t i = 0; i < 4; ++i)
        pMesh->SetSkinnedTransform(i, ra::Name(("bone" + std::to_string(i)).c_str()), static_cast<int32_t>(i));
    MeshRef mesh;
    mesh.Set(std::move(pMesh));
    return mesh;
}

std::unique_ptr<Skeleton> MakeSkeleton() {
    auto pSkeleton = std::make_unique<Skeleton>(s_BoneCount);
    for (int32_t i = 0; i < s_BoneCount; ++i) {
        pSkeleton->SetBoneName(i, ra::Name(("bone" + std::to_string(i)).c_str()));
        pSkeleton->SetParent(i, i == 0 ? -1 : (i - 1) / 2);
    }
    pSkeleton->BuildRefPose();
    return pSkeleton;
}

template <class V>
std::unique_ptr<AnimStream<V>> MakeStream() {
    auto pStream = std::make_unique<AnimStream<V>>();
    float time = 0.0f;
    for (AnimKey<V>& key : pStream->SetKeyCount(s_KeyCount))
        key = {std::exchange(time, time + 1.0f / s_KeyCount), V()};
    return pStream;
}

std::unique_ptr<Anim> MakeClip(const RenderModel& model, int index) {
    auto pAnim = std::make_unique<Anim>();
    pAnim->SetName(("clip" + std::to_string(index)).c_str());
    pAnim->SetLength(s_KeyCount, 30.0f);
    pAnim->SetBoneCount(s_BoneCount);
    for (int32_t i = 0; i < s_BoneCount; ++i) {
        pAnim->SetBoneName(i, model.GetSkeleton()->GetBone(i).GetName());
        pAnim->SetBoneAnimated(i, true);
        pAnim->SetBoneStreams(i, MakeStream<glm::vec3>(), MakeStream<glm::quat>());
    }
    return pAnim;
}

std::unique_ptr<RenderModel> MakeModel() {
    auto pModel = std::make_unique<RenderModel>();
    pModel->SetName("model");
    pModel->SetSkeleton(MakeSkeleton());
    std::vector<ShaderRef> shaders;
    for (uint32_t i = 0; i < s_TextureCount; ++i)
        shaders.push_back(MakeShader(i));
    auto pGroup = std::make_unique<ra::MeshGroup>();
    pGroup->SetMeshCount(s_MeshCount);
    for (uint32_t i = 0; i < s_MeshCount; ++i) {
        const MeshRef mesh = MakeMesh(i, shaders[i % s_TextureCount]);
        pGroup->SetMesh(i, mesh);
        pGroup->SetMeshName(i, mesh->GetNameKey());
    }
    pModel->SetMeshGroup(std::move(pGroup));
    pModel->SetAnimList(std::make_unique<AnimList>(*pModel));
    for (int i = 0; i < s_ClipCount; ++i)
        ra::AddAnimNode(*pModel, ra::MakeLocalNode(*pModel, MakeClip(*pModel, i)), 3);
    return pModel;
}

[[noreturn]] void Stop(const char* pReason) {
    std::fprintf(stderr, "%s\n", pReason);
    std::_Exit(1);
}

// Its bytes.
uint32_t SaveFile() {
    if (!ra::SaveFinal(*MakeModel(), s_Path))
        Stop("the model can't be saved");
    return FilePath::OpenStream(s_Path, ByteStream::Mode_Read)->GetLength();
}

void SetBytes(benchmark::State& state, uint32_t size) { state.SetBytesProcessed(state.iterations() * int64_t{size}); }

void ReadWhole() {
    const auto pStream = FilePath::OpenStream(s_Path, ByteStream::Mode_Read);
    const uint32_t size = pStream ? pStream->GetLength() : 0;
    const auto pBlock = std::make_unique_for_overwrite<std::byte[]>(size);
    if (size == 0 || pStream->Read(pBlock.get(), size) != size)
        Stop("the file can't be read");
    benchmark::DoNotOptimize(pBlock.get());
}

std::unique_ptr<RenderModel> LoadWhole() {
    std::unique_ptr<RenderModel> pModel = ra::LoadFinal("model");
    if (!pModel || pModel->GetAnimList()->GetCount() != s_ClipCount)
        Stop("the model can't be loaded");
    return pModel;
}

// Saving goes on elsewhere too, so that this process's memory is still fresh.
template <class Work>
void MeasureFirst(benchmark::State& state, const Work& work) {
    const ModelServices services;
    RunInOwnProcess([] { SaveFile(); });
    for (auto _ : state)
        state.SetIterationTime(TimeInOwnProcess([] {}, work));
}

void BM_FirstPlainRead(benchmark::State& state) { MeasureFirst(state, ReadWhole); }

// What has been loaded goes with the process.
void BM_FirstLoadFinal(benchmark::State& state) {
    MeasureFirst(state, [] { benchmark::DoNotOptimize(LoadWhole().release()); });
}

void BM_PlainRead(benchmark::State& state) {
    const ModelServices services;
    const uint32_t size = SaveFile();
    Inv::PurgeUnreferenced();
    for (auto _ : state)
        ReadWhole();
    SetBytes(state, size);
}

// What went before is taken away outside of the time.
void BM_LoadFinal(benchmark::State& state) {
    const ModelServices services;
    const uint32_t size = SaveFile();
    uint64_t allocations = 0;
    for (auto _ : state) {
        state.PauseTiming();
        Inv::PurgeUnreferenced();
        state.ResumeTiming();
        const uint64_t before = s_Allocations;
        std::unique_ptr<RenderModel> pModel = LoadWhole();
        allocations = s_Allocations - before;
        state.PauseTiming();
        pModel.reset();
        state.ResumeTiming();
    }
    SetBytes(state, size);
    state.counters["allocations"] = static_cast<double>(allocations);
}

void BM_SaveFinal(benchmark::State& state) {
    const ModelServices services;
    const std::unique_ptr<RenderModel> pModel = MakeModel();
    const uint32_t size = SaveFile();
    for (auto _ : state)
        if (!ra::SaveFinal(*pModel, s_Path))
            state.SkipWithError("the model can't be saved");
    SetBytes(state, size);
}

// First, as long as nothing was freed.
BENCHMARK(BM_FirstPlainRead)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(BM_FirstLoadFinal)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(BM_PlainRead)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadFinal)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveFinal)->Unit(benchmark::kMillisecond);

} // namespace
