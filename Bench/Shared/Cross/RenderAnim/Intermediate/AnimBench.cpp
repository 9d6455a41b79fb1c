// Animations of some bones over some frames: laying them down, saving them to disk beside a plain write of as many
// bytes, and loading them again; and the streams on their own. Saving is to cost little more than the plain write.
#include <cmath>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared/PC/FileSystem/OSFile.h"

namespace {

constexpr uint32_t s_FramesOfABlock = 32; // as the exporter samples

// A folder on disk under "TOOL", and the inventory, for one benchmark.
class Services {
public:
    Services() {
        Inv::Initialize();
        std::string pattern = (std::filesystem::temp_directory_path() / "PvxBench.XXXXXX").string();
        m_Folder = mkdtemp(pattern.data());
        FilePath::AddSource("TOOL", "HD", 1, std::make_shared<FilePathHDRaw>(false));
    }
    ~Services() {
        FilePath::RemoveSource("TOOL", "HD");
        std::filesystem::remove_all(m_Folder);
        Inv::Shutdown();
    }
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;

    std::string At(const char* pName) const { return "TOOL:" + OSFile::FromNative((m_Folder / pName).string()); }

private:
    std::filesystem::path m_Folder;
};

std::string BoneName(uint32_t bone) { return "bone" + std::to_string(bone); }

// Block by block of frames, bone by bone within a block.
void Sample(AnimInterm& anim, uint32_t boneCount, uint32_t frameCount) {
    anim.SetLength(static_cast<int32_t>(frameCount), 30.0f);
    anim.SetBoneCount(boneCount);
    std::vector<std::span<MatrixKey>> streams;
    for (uint32_t bone = 0; bone < boneCount; ++bone) {
        anim.SetBoneName(static_cast<int32_t>(bone), ra::Name(BoneName(bone).c_str()));
        streams.push_back(anim.MakeMatrixStream(static_cast<int32_t>(bone), frameCount));
    }
    const float step = 1.0f / static_cast<float>(frameCount);
    for (uint32_t first = 0; first < frameCount; first += s_FramesOfABlock)
        for (uint32_t bone = 0; bone < boneCount; ++bone)
            for (uint32_t i = first; i < std::min(first + s_FramesOfABlock, frameCount); ++i) {
                const auto x = static_cast<float>(i);
                streams[bone][i] = {x * step, {{x, 0, 0}, {0, x, 0}, {0, 0, x}, {x, x, x}}};
            }
}

std::unique_ptr<RenderModel> MakeModel(uint32_t boneCount) {
    auto pModel = std::make_unique<RenderModel>();
    pModel->SetName("model");
    pModel->SetMeshGroup(std::make_unique<ra::MeshGroup>());
    auto pSkeleton = std::make_unique<Skeleton>(boneCount);
    for (uint32_t bone = 0; bone < boneCount; ++bone)
        pSkeleton->SetBoneName(static_cast<int32_t>(bone), ra::Name(BoneName(bone).c_str()));
    pModel->SetSkeleton(std::move(pSkeleton));
    return pModel;
}

std::unique_ptr<RenderModel> MakeAnimatedModel(const benchmark::State& state) {
    const auto boneCount = static_cast<uint32_t>(state.range(0));
    std::unique_ptr<RenderModel> pModel = MakeModel(boneCount);
    auto pAnim = std::make_unique<AnimInterm>();
    pAnim->SetName("anim");
    Sample(*pAnim, boneCount, static_cast<uint32_t>(state.range(1)));
    AnimRef anim;
    anim.Set(std::move(pAnim));
    auto pNode = std::make_unique<AnimListNode>(boneCount, 0);
    pNode->SetAnim(anim);
    auto pList = std::make_unique<AnimListGeneric>(*pModel);
    pList->AddNode(std::move(pNode));
    pModel->SetAnimList(std::move(pList));
    return pModel;
}

void SetCounters(benchmark::State& state) {
    const auto keys = state.iterations() * state.range(0) * state.range(1);
    state.SetBytesProcessed(keys * static_cast<int64_t>(sizeof(MatrixKey)));
    state.counters["s/key"] =
        benchmark::Counter(static_cast<double>(keys), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_LayDown(benchmark::State& state) {
    for (auto _ : state) {
        AnimInterm anim;
        Sample(anim, static_cast<uint32_t>(state.range(0)), static_cast<uint32_t>(state.range(1)));
        benchmark::DoNotOptimize(anim.GetMatrixStream(0));
    }
    SetCounters(state);
}

void BM_Save(benchmark::State& state) {
    const Services services;
    const std::unique_ptr<RenderModel> pModel = MakeAnimatedModel(state);
    const std::string path = services.At("anim.pvx");
    for (auto _ : state)
        if (!ra::SaveIntermediate(path.c_str(), *pModel, false, true, false))
            state.SkipWithError("can't be saved");
    SetCounters(state);
}

// The least that the bytes cost: into a new file, in pieces of a stream's size.
void BM_PlainWrite(benchmark::State& state) {
    const Services services;
    const std::string path = services.At("plain");
    const std::vector<char> piece(static_cast<size_t>(state.range(1)) * sizeof(MatrixKey));
    for (auto _ : state) {
        FilePath::Delete(path.c_str());
        const auto pStream = FilePath::OpenStream(path.c_str(), ByteStream::Mode_Write);
        for (int64_t bone = 0; bone < state.range(0); ++bone)
            pStream->Write(piece.data(), static_cast<uint32_t>(piece.size()));
        if (!pStream->Flush())
            state.SkipWithError("can't be written");
    }
    SetCounters(state);
}

void BM_Load(benchmark::State& state) {
    const Services services;
    const std::string path = services.At("anim.pvx");
    ra::SaveIntermediate(path.c_str(), *MakeAnimatedModel(state), false, true, false);
    for (auto _ : state) {
        state.PauseTiming();
        Inv::PurgeUnreferenced();
        const std::unique_ptr<RenderModel> pModel = MakeModel(static_cast<uint32_t>(state.range(0)));
        state.ResumeTiming();
        ra::AppendIntermediateAnims(*pModel, path.c_str());
    }
    SetCounters(state);
}

void Sizes(benchmark::internal::Benchmark* pBenchmark) {
    pBenchmark->ArgNames({"bones", "frames"})->Unit(benchmark::kMillisecond);
    for (const auto& [bones, frames] : {std::pair(10, 30), {200, 1'800}, {1'000, 1'800}, {200, 10'000}})
        pBenchmark->Args({bones, frames});
}

BENCHMARK(BM_LayDown)->Apply(Sizes);
BENCHMARK(BM_Save)->Apply(Sizes);
BENCHMARK(BM_PlainWrite)->Apply(Sizes);
BENCHMARK(BM_Load)->Apply(Sizes);

FloatStream MakeTrack(uint32_t frames) {
    FloatStream track;
    uint32_t frame = 0;
    for (FloatKey& key : track.SetKeyCount(frames)) {
        const float time = static_cast<float>(frame++) / static_cast<float>(frames - 1);
        key = {time, std::sin(time * 30)};
    }
    return track;
}

void BM_PlayOn(benchmark::State& state) {
    const FloatStream track = MakeTrack(static_cast<uint32_t>(state.range(0)));
    uint16_t hint = 0;
    float time = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(track.Sample(time, true, hint));
        time += 0.0001f;
        if (time > 1)
            time -= 1;
    }
}

void BM_ThinKeys(benchmark::State& state) {
    const FloatStream track = MakeTrack(static_cast<uint32_t>(state.range(0)));
    for (auto _ : state) {
        FloatStream thinned = track;
        ThinKeys(thinned, 0.005f);
        benchmark::DoNotOptimize(thinned.GetKeyCount());
    }
    state.counters["s/key"] = benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                                                 benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

BENCHMARK(BM_PlayOn)->Arg(100)->Arg(10'000);
BENCHMARK(BM_ThinKeys)->Arg(100)->Arg(1'800)->Arg(60'000)->Unit(benchmark::kMicrosecond);

} // namespace
