#include "Host/Scene/Build.h"
#include "Host/Sdk/Core.h"

#include <benchmark/benchmark.h>

namespace {

// As much work as a keyed track has to do at least: a rotation made anew for each time.
class TurnController : public scene::Controller {
public:
    scene::Affine Evaluate(TimeValue t) const override {
        const glm::dquat rotation = glm::normalize(glm::dquat(1.0, 0.0, 1e-4 * t, 0.0));
        return scene::ComposeTransform({1, 0, 0}, rotation, {1, 1, 1});
    }
    bool IsAnimated() const override { return true; }
};

void BM_MakeNodes(benchmark::State& state) {
    for (auto _ : state) {
        scene::Scene made;
        for (int64_t i = 0; i < state.range(0); ++i)
            AddBone(made, "Bone", nullptr).SetLocal({1, 2, 3});
        benchmark::DoNotOptimize(made.GetRootNode()->GetChildNode(0)->GetNodeTM(0));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_MakeNodes)->Arg(1000)->Arg(10000)->Arg(100000);

// Every bone of a chain at every frame, frame by frame. Items are bones and frames.
void BM_SampleChain(benchmark::State& state) {
    scene::Scene made;
    std::vector<INode*> bones;
    scene::Node* pParent = nullptr;
    for (int64_t i = 0; i < state.range(0); ++i) {
        pParent = &AddBone(made, "Bone", pParent);
        pParent->SetController(std::make_unique<TurnController>());
        bones.push_back(pParent);
    }
    constexpr int frames = 1000;
    made.SetAnimRange({0, (frames - 1) * GetTicksPerFrame()});
    for (auto _ : state)
        for (int frame = 0; frame < frames; ++frame)
            for (INode* pBone : bones)
                benchmark::DoNotOptimize(pBone->GetNodeTM(frame * GetTicksPerFrame()));
    state.SetItemsProcessed(state.iterations() * frames * state.range(0));
}
BENCHMARK(BM_SampleChain)->Arg(25)->Arg(100)->Arg(400)->Arg(2000);

void BM_SkinnedMesh(benchmark::State& state) {
    scene::Scene made;
    scene::Node& bone = AddBone(made, "Bone");
    Mesh mesh;
    mesh.setNumVerts(static_cast<int>(state.range(0)));
    scene::SkinWeights weights;
    const std::vector<scene::SkinWeights::Influence> influences(4, {0, 0.25f});
    for (int64_t i = 0; i < state.range(0); ++i)
        weights.AddPoint(influences);
    std::vector<scene::SkinBone> bones = {{&bone, IdentityMatrix()}};
    auto source = std::make_unique<scene::ReadySkinSource>(std::move(weights));
    scene::SkinModifier skin(std::move(bones), std::move(source));
    for (auto _ : state)
        skin.Deform(mesh, 0, nullptr);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_SkinnedMesh)->Arg(1000)->Arg(100000);

} // namespace
