// What a burn costs: a job of one small file, which is the price of the process and its pipe; folders of models, whose
// time and memory a file shall not depend on how many there are; a plain copy of the same files beside that; and the
// pipe's own price for the messages of such a job.

#include "Shared/PC/Win32Util/NamedPipe.h"
#include "Shared_Tools/Burner/Protocol/BurnerMsg.h"
#include "Tests/Shared_Tools/BurnerImp/BurnProject.h"

#include <filesystem>
#include <thread>

#include <benchmark/benchmark.h>
#include <sys/resource.h>

namespace {

class Project : public BurnProject {
public:
    void TestBody() override {}

    void WriteText() { m_Folder.Write("gen/art/a.txt", "a"); }
    // Of some thousand triangles and a picture each.
    void WriteModels(int64_t count) {
        const ShaderRef clay = MakeShader("Clay");
        clay->SetChannelTexture(0, AddTexture("art/clay", 128));
        auto pModel = std::make_unique<RenderModel>();
        pModel->SetName("Model");
        pModel->SetMeshGroup(MakeGroup({MakeGrid(clay)}));
        const std::string bytes = Write(*pModel);
        for (int64_t i = 0; i < count; ++i)
            m_Folder.Write("gen/art/" + std::to_string(i) + ".pvx", bytes);
        m_Bytes = static_cast<int64_t>(bytes.size()) * count;
    }
    bool BurnAll() { return Burn("gen/art", ".*", {.all = true}) == 1; }
    void CopyAll() const {
        std::filesystem::remove_all(m_Folder.Get().Native("copy"));
        std::filesystem::copy(m_Folder.Get().Native("gen/art"), m_Folder.Get().Native("copy"));
    }
    int64_t GetBytes() const { return m_Bytes; }

private:
    // A fan, as the tests have it, is no mesh that anybody makes.
    static MeshRef MakeGrid(const ShaderRef& shader) {
        constexpr uint32_t side = 64;
        MeshRef mesh = MakeMesh("Body", {shader}, side * side);
        std::vector<uint16_t> indices;
        for (uint32_t i = 0; i + side + 1 < side * side; ++i)
            if ((i + 1) % side != 0)
                for (const uint32_t corner : {i, i + side, i + 1, i + 1, i + side, i + side + 1})
                    indices.push_back(static_cast<uint16_t>(corner));
        gz::PrimSet& primSet = *mesh->GetPrimSet(0, ra::Mesh::Poly_High);
        primSet.SetUp(0, static_cast<uint32_t>(indices.size()), gz::PrimKind_TriangleList);
        primSet.SetIndices(indices);
        return mesh;
    }

    int64_t m_Bytes = 0;
};

// Of the largest child so far, which is why the folders grow from one measurement to the next.
double GetChildMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

void BM_JobOfOneFile(benchmark::State& state) {
    Project project;
    project.WriteText();
    for (auto _ : state)
        if (!project.BurnAll())
            state.SkipWithError("the burn failed");
}
BENCHMARK(BM_JobOfOneFile)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_JobOfModels(benchmark::State& state) {
    Project project;
    project.WriteModels(state.range(0));
    for (auto _ : state)
        if (!project.BurnAll())
            state.SkipWithError("the burn failed");
    state.SetBytesProcessed(state.iterations() * project.GetBytes());
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["child_MB"] = GetChildMegabytes();
}
BENCHMARK(BM_JobOfModels)->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(2);

void BM_CopyOfModels(benchmark::State& state) {
    Project project;
    project.WriteModels(state.range(0));
    for (auto _ : state)
        project.CopyAll();
    state.SetBytesProcessed(state.iterations() * project.GetBytes());
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_CopyOfModels)->Arg(500)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_MessagesOverThePipe(benchmark::State& state) {
    const TempFolder folder;
    setenv("PVX_PIPES", folder.Native("pipes").c_str(), 1);
    BurnerUpdateMsg update;
    AddBurnerInfo(update.messages, "art\\tanks\\model.pvx", "[1/500] model: wrote DATA:art\\tanks\\model.obm");
    for (auto _ : state) {
        NamedPipe server("Pipe", NamedPipe::Role::Server);
        NamedPipe client("Pipe", NamedPipe::Role::Client);
        if (!server.Open() || !client.Open() || !server.Connect() || !client.Connect())
            state.SkipWithError("no pipe");
        std::thread sender([&] {
            for (int64_t i = 0; i < state.range(0); ++i)
                NamedPipeMsg::SendMsg(client, update);
        });
        for (int64_t i = 0; i < state.range(0); ++i) {
            NamedPipeRawMsg raw;
            BurnerUpdateMsg taken;
            if (!NamedPipeMsg::ReadMsg(server, raw) || !NamedPipeMsg::ParseMsg(raw, taken))
                state.SkipWithError("no message");
        }
        sender.join();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    unsetenv("PVX_PIPES");
}
BENCHMARK(BM_MessagesOverThePipe)->Arg(500)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
