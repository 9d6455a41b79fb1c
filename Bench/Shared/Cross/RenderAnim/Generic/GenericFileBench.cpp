// What a merge costs in this folder's terms: animations of a sampled skeleton, each in a file of its own, become local
// streams of one model, which is saved in the generic form and loaded again. Saving and loading stand beside a plain
// write and read of as many bytes; the files are in the system's cache.
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Bench/Shared/Cross/RenderAnim/ModelServices.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Chunks/AnimNodes.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/Cross/RenderAnim/Transform.h"

namespace {

constexpr uint32_t s_FrameCount = 60; // two seconds at 30 frames a second
constexpr char s_ClipPath[] = "DATA:clip.pvx";
constexpr char s_ModelPath[] = "DATA:model.pvx";

ra::Name BoneName(int32_t bone) { return ra::Name(("bone" + std::to_string(bone)).c_str()); }

std::unique_ptr<RenderModel> MakeModel(int32_t boneCount) {
    auto pModel = std::make_unique<RenderModel>();
    pModel->SetName("model");
    pModel->SetMeshGroup(std::make_unique<ra::MeshGroup>());
    auto pSkeleton = std::make_unique<Skeleton>(static_cast<uint32_t>(boneCount));
    for (int32_t bone = 0; bone < boneCount; ++bone) {
        pSkeleton->SetBoneName(bone, BoneName(bone));
        pSkeleton->SetParent(bone, bone == 0 ? -1 : (bone - 1) / 2);
    }
    pSkeleton->BuildRefPose();
    pModel->SetSkeleton(std::move(pSkeleton));
    return pModel;
}

// A file of one animation alone, as the exporter writes it.
void SaveClip(int32_t boneCount) {
    const std::unique_ptr<RenderModel> pModel = MakeModel(boneCount);
    auto pAnim = std::make_unique<AnimInterm>();
    pAnim->SetName("clip");
    pAnim->SetLength(s_FrameCount, 30.0f);
    pAnim->SetBoneCount(static_cast<uint32_t>(boneCount));
    for (int32_t bone = 0; bone < boneCount; ++bone) {
        pAnim->SetBoneName(bone, BoneName(bone));
        pAnim->SetBoneAnimated(bone, true);
        uint32_t i = 0;
        for (MatrixKey& key : pAnim->MakeMatrixStream(bone, s_FrameCount)) {
            const float time = static_cast<float>(i++) / s_FrameCount;
            key = {time, ra::MakeTransform(glm::angleAxis(time, glm::vec3(0, 0, 1)), {time, 1, 2})};
        }
    }
    ra::AddAnimNode(*pModel, ra::MakeLocalNode(*pModel, std::move(pAnim)), 1);
    ra::SaveIntermediate(s_ClipPath, *pModel, false, true, false);
}

std::unique_ptr<RenderModel> Merge(const benchmark::State& state) {
    std::unique_ptr<RenderModel> pModel = MakeModel(static_cast<int32_t>(state.range(0)));
    for (int64_t i = 0; i < state.range(1); ++i)
        ra::AppendIntermediateAnims(*pModel, s_ClipPath);
    return pModel;
}

void SetCounters(benchmark::State& state, size_t keyBytes) {
    const int64_t keys = state.iterations() * state.range(0) * state.range(1) * s_FrameCount;
    state.SetBytesProcessed(keys * static_cast<int64_t>(keyBytes));
    state.counters["s/key"] =
        benchmark::Counter(static_cast<double>(keys), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

constexpr size_t s_LocalKeyBytes = sizeof(Vec3Key) + sizeof(QuatKey);

void BM_Append(benchmark::State& state) {
    const ModelServices services;
    SaveClip(static_cast<int32_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(Merge(state));
        state.PauseTiming();
        Inv::PurgeUnreferenced();
        state.ResumeTiming();
    }
    SetCounters(state, sizeof(MatrixKey));
}

void BM_Save(benchmark::State& state) {
    const ModelServices services;
    SaveClip(static_cast<int32_t>(state.range(0)));
    const std::unique_ptr<RenderModel> pModel = Merge(state);
    for (auto _ : state)
        if (!ra::SaveGeneric(*pModel, s_ModelPath))
            state.SkipWithError("can't be saved");
    SetCounters(state, s_LocalKeyBytes);
}

// The least that the bytes cost: into a new file, in one piece.
void BM_PlainWrite(benchmark::State& state) {
    const ModelServices services;
    const std::vector<char> bytes(static_cast<size_t>(state.range(0) * state.range(1)) * s_FrameCount *
                                  s_LocalKeyBytes);
    for (auto _ : state) {
        FilePath::Delete("DATA:plain");
        const auto pStream = FilePath::OpenStream("DATA:plain", ByteStream::Mode_Write);
        if (pStream->Write(bytes.data(), static_cast<uint32_t>(bytes.size())) != bytes.size() || !pStream->Flush())
            state.SkipWithError("can't be written");
    }
    SetCounters(state, s_LocalKeyBytes);
}

void BM_Load(benchmark::State& state) {
    const ModelServices services;
    SaveClip(static_cast<int32_t>(state.range(0)));
    ra::SaveGeneric(*Merge(state), s_ModelPath);
    for (auto _ : state) {
        state.PauseTiming();
        Inv::PurgeUnreferenced();
        state.ResumeTiming();
        benchmark::DoNotOptimize(ra::LoadGeneric(s_ModelPath, false));
    }
    SetCounters(state, s_LocalKeyBytes);
}

void BM_PlainRead(benchmark::State& state) {
    const ModelServices services;
    SaveClip(static_cast<int32_t>(state.range(0)));
    ra::SaveGeneric(*Merge(state), s_ModelPath);
    for (auto _ : state) {
        const auto pStream = FilePath::OpenStream(s_ModelPath, ByteStream::Mode_Read);
        const auto pBytes = std::make_unique_for_overwrite<char[]>(pStream->GetLength());
        pStream->Read(pBytes.get(), pStream->GetLength());
        benchmark::DoNotOptimize(pBytes.get());
    }
    SetCounters(state, s_LocalKeyBytes);
}

void Sizes(benchmark::internal::Benchmark* pBenchmark) {
    pBenchmark->ArgNames({"bones", "clips"})->Unit(benchmark::kMillisecond);
    for (const auto& [bones, clips] : {std::pair(50, 20), {200, 200}})
        pBenchmark->Args({bones, clips});
}

BENCHMARK(BM_Append)->Apply(Sizes);
BENCHMARK(BM_Save)->Apply(Sizes);
BENCHMARK(BM_PlainWrite)->Apply(Sizes);
BENCHMARK(BM_Load)->Apply(Sizes);
BENCHMARK(BM_PlainRead)->Apply(Sizes);

} // namespace
