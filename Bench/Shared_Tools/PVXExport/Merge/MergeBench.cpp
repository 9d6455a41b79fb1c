// What it costs to merge animations into a model, by their number: a whole merge with its log and services, and its
// peak of memory; and to load what came of it, beside loading the model and each animation as they were exported. The
// files, of 60 bones and two seconds each, are in the system's cache.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <malloc.h>

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/RenderAnim/AnimInterm.h"
#include "Shared/Cross/RenderAnim/AnimListGeneric.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared_Tools/PVXExport/Merge/animerge.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

namespace {

constexpr int32_t s_BoneCount = 60;
constexpr uint32_t s_KeyCount = 60;
constexpr int s_MostAnims = 200;

constexpr const char* s_Model = "int\\ref.pvx";
constexpr const char* s_Merged = "gen\\tank.pvx";

// What a merge brings along by itself.
class Services {
public:
    Services() {
        gz::Start({.name = "Null"});
        Inv::Initialize();
        FilePath::AddSource("TOOL", "HD", 99, std::make_shared<FilePathHDRaw>(false));
        ra::SetGenericLoad(true);
    }
    ~Services() {
        FilePath::RemoveSource("TOOL", "HD");
        Inv::Shutdown();
        gz::Stop();
    }
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;
};

std::string ToolPath(const std::string& name) { return "TOOL:" + name; }
std::string AnimName(int index) { return "int\\clip" + std::to_string(index) + ".pvx"; }
std::string BoneName(int32_t index) { return "bone" + std::to_string(index); }

std::unique_ptr<Skeleton> MakeSkeleton() {
    auto pSkeleton = std::make_unique<Skeleton>(s_BoneCount);
    for (int32_t i = 0; i < s_BoneCount; ++i) {
        pSkeleton->SetBoneName(i, ra::Name(BoneName(i).c_str()));
        pSkeleton->SetParent(i, i == 0 ? -1 : (i - 1) / 2);
        pSkeleton->SetLocalPosition(i, {0, 1, 0});
    }
    pSkeleton->BuildRefPose();
    return pSkeleton;
}

std::unique_ptr<AnimInterm> MakeAnim(int index, const Skeleton& skeleton) {
    auto pAnim = std::make_unique<AnimInterm>();
    pAnim->SetName(("clip" + std::to_string(index)).c_str());
    pAnim->SetLength(s_KeyCount, 30);
    pAnim->SetBoneCount(s_BoneCount);
    for (int32_t bone = 0; bone < s_BoneCount; ++bone) {
        pAnim->SetBoneName(bone, skeleton.GetBone(bone).GetName());
        pAnim->SetBoneAnimated(bone, true);
        const std::span<MatrixKey> keys = pAnim->MakeMatrixStream(bone, s_KeyCount);
        for (uint32_t i = 0; i < s_KeyCount; ++i) {
            keys[i] = {static_cast<float>(i) / (s_KeyCount - 1), skeleton.GetBone(bone).GetReferenceMatrix()};
            keys[i].value[3].x += static_cast<float>(i + static_cast<uint32_t>(bone));
        }
    }
    return pAnim;
}

std::unique_ptr<RenderModel> MakeModel() {
    auto pModel = std::make_unique<RenderModel>();
    pModel->SetName("ref");
    pModel->SetMeshGroup(std::make_unique<ra::MeshGroup>());
    pModel->SetSkeleton(MakeSkeleton());
    return pModel;
}

void WriteAnim(int index) {
    const std::unique_ptr<RenderModel> pModel = MakeModel();
    AnimRef anim;
    anim.Set(MakeAnim(index, *pModel->GetSkeleton()));
    auto pNode = std::make_unique<AnimListNode>(s_BoneCount, 0);
    pNode->SetAnim(anim);
    pModel->SetAnimList(std::make_unique<AnimListGeneric>(*pModel));
    pModel->GetAnimList()->AddNode(std::move(pNode));
    ra::SaveIntermediate(ToolPath(AnimName(index)).c_str(), *pModel, false, true, false);
}

// A project, in which the process works: its files are named from there, since the folder's own name has a point, which
// is where the log's name would end.
class Project {
public:
    Project() {
        std::filesystem::current_path(m_Folder.Native());
        for (const char* pFolder : {"int", "gen", "ToolsData"})
            m_Folder.MakeFolder(pFolder);
        m_Folder.Write("pipeline.ini",
                       "[Global]\r\nToolsData=ToolsData\r\n[project:game]\r\nDataBurn=burn\r\nDataSource=src\r\n"
                       "DataSourceShared=shared\r\nDataIntermediate=int\r\nDataGeneric=gen\r\nDataFinal=final\r\n"
                       "DataPreview=preview\r\nLocaleFolder=locale\r\nAttrLoc=attr\r\nParent=\r\n");
        const Services services;
        ra::SaveIntermediate(ToolPath(s_Model).c_str(), *MakeModel(), true, false, true);
        for (int i = 0; i < s_MostAnims; ++i)
            WriteAnim(i);
    }
    ~Project() { std::filesystem::current_path("/"); }
    Project(const Project&) = delete;
    Project& operator=(const Project&) = delete;

private:
    TempFolder m_Folder;
};

// Made once, for all sizes, and gone with the program.
void UseProject() { static const Project s_Project; }

bool Merge(int count) {
    AniMergeArguments arguments{.count = 3, .mergeFile = s_Merged, .modelFile = s_Model, .animFiles = {}};
    for (int i = 0; i < count; ++i)
        arguments.animFiles.push_back(AnimName(i));
    return AniMerge(arguments, {.exportModel = true, .exportTextures = false});
}

// Ahead of it, what was freed before goes back to the system.
void ResetPeak() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
}

double GetPeakMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (double kilobytes = 0; word == "VmHWM:" && status >> kilobytes)
            return kilobytes / 1024;
    return 0;
}

void SetSizes(benchmark::internal::Benchmark* pBenchmark) {
    pBenchmark->RangeMultiplier(2)->Range(25, s_MostAnims)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
}

void BM_Merge(benchmark::State& state) {
    UseProject();
    const auto count = static_cast<int>(state.range(0));
    ResetPeak();
    for (auto _ : state)
        if (!Merge(count))
            state.SkipWithError("the merge failed");
    state.counters["peakMB"] = GetPeakMegabytes();
    state.counters["fileMB"] = static_cast<double>(std::filesystem::file_size("gen/tank.pvx")) / (1 << 20);
    state.SetComplexityN(count);
}
BENCHMARK(BM_Merge)->Apply(SetSizes);

void BM_LoadMerged(benchmark::State& state) {
    UseProject();
    Merge(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const Services services;
        benchmark::DoNotOptimize(ra::LoadGeneric(ToolPath(s_Merged).c_str(), false));
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_LoadMerged)->Apply(SetSizes);

void BM_LoadParts(benchmark::State& state) {
    UseProject();
    for (auto _ : state) {
        const Services services;
        const std::unique_ptr<RenderModel> pModel = ra::LoadIntermediate(ToolPath(s_Model).c_str());
        for (int i = 0; i < state.range(0); ++i)
            ra::AppendIntermediateAnims(*pModel, ToolPath(AnimName(i)).c_str());
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_LoadParts)->Apply(SetSizes);

} // namespace
