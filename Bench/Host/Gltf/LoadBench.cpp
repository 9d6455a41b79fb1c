#include "Host/Gltf/Loader.h"
#include "Host/Gltf/PositionWeld.h"
#include "Host/Gltf/SmoothingGroups.h"
#include "Host/Scene/Scene.h"
#include "Host/Sdk/Mesh.h"
#include "Host/Sdk/View.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

// What a scene costs from its file to the host's meshes, by vertex and by node.

namespace {

constexpr int s_LargestSide = 100; // a grid of 100 by 100 vertices is within what one exported mesh holds

void Put(std::string& out, const auto& value) { out.append(reinterpret_cast<const char*>(&value), sizeof value); }

struct Grid {
    int side;
    std::string buffer; // positions, normals, texture coordinates, indices

    explicit Grid(int vertices) : side(std::max(2, static_cast<int>(std::sqrt(vertices)))) {
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x)
                for (const float p :
                     {static_cast<float>(x), std::sin(static_cast<float>(y * side + x)), static_cast<float>(y)})
                    Put(buffer, p);
        for (int i = 0; i < side * side; ++i)
            for (const float n : {0.0f, 1.0f, 0.0f})
                Put(buffer, n);
        for (int i = 0; i < side * side; ++i)
            for (const int t : {i % side, i / side})
                Put(buffer, static_cast<float>(t) / static_cast<float>(side));
        for (int y = 0; y + 1 < side; ++y)
            for (int x = 0; x + 1 < side; ++x)
                for (const int corner : {0, side, 1, 1, side, side + 1})
                    Put(buffer, static_cast<uint16_t>(y * side + x + corner));
        buffer.resize((buffer.size() + 3) / 4 * 4);
    }
    int GetVertexCount() const { return side * side; }
    int GetIndexCount() const { return (side - 1) * (side - 1) * 6; }
};

// A .glb of `meshes` grids, each with accessors and a node of its own over one buffer.
std::string MakeGlb(const Grid& grid, int meshes) {
    const int n = grid.GetVertexCount();
    std::string nodes;
    std::string meshList;
    std::string accessors;
    for (int i = 0; i < meshes; ++i) {
        char text[1024];
        const char* pComma = i ? "," : "";
        std::snprintf(text, sizeof text, R"(%s{"name":"node_%d","mesh":%d,"translation":[%d,0,0]})", pComma, i, i, i);
        nodes += text;
        std::snprintf(text, sizeof text,
                      R"(%s{"primitives":[{"attributes":{"POSITION":%d,"NORMAL":%d,"TEXCOORD_0":%d},"indices":%d}]})",
                      pComma, i * 4, i * 4 + 1, i * 4 + 2, i * 4 + 3);
        meshList += text;
        std::snprintf(text, sizeof text,
                      R"(%s{"bufferView":0,"componentType":5126,"count":%d,"type":"VEC3"},)"
                      R"({"bufferView":0,"byteOffset":%d,"componentType":5126,"count":%d,"type":"VEC3"},)"
                      R"({"bufferView":0,"byteOffset":%d,"componentType":5126,"count":%d,"type":"VEC2"},)"
                      R"({"bufferView":0,"byteOffset":%d,"componentType":5123,"count":%d,"type":"SCALAR"})",
                      pComma, n, n * 12, n, n * 24, n, n * 32, grid.GetIndexCount());
        accessors += text;
    }
    const std::string size = std::to_string(grid.buffer.size());
    std::string json = R"({"asset":{"version":"2.0"},"nodes":[)" + nodes + R"(],"meshes":[)" + meshList +
                       R"(],"accessors":[)" + accessors + R"(],"bufferViews":[{"buffer":0,"byteLength":)" + size +
                       R"(}],"buffers":[{"byteLength":)" + size + "}]}";
    json.resize((json.size() + 3) / 4 * 4, ' ');
    std::string glb = "glTF";
    Put(glb, uint32_t{2});
    Put(glb, static_cast<uint32_t>(28 + json.size() + grid.buffer.size()));
    Put(glb, static_cast<uint32_t>(json.size()));
    glb += "JSON" + json;
    Put(glb, static_cast<uint32_t>(grid.buffer.size()));
    return glb + std::string("BIN\0", 4) + grid.buffer;
}

class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& content) {
        std::string path = (std::filesystem::temp_directory_path() / "gltf-bench-XXXXXX").string();
        if (!mkdtemp(path.data()))
            throw std::runtime_error("no temporary folder");
        m_Folder = path;
        std::ofstream(m_Folder / "scene.glb", std::ios::binary) << content;
    }
    ~TemporaryFile() { std::filesystem::remove_all(m_Folder); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    std::string GetPath() const { return OSFile::FromNative((m_Folder / "scene.glb").string()); }

private:
    std::filesystem::path m_Folder;
};

class AnyView : public View {
public:
    Point2 ViewToScreen(Point3 point) override { return {point.x, point.y}; }
};

size_t BuildAllMeshes(scene::Scene& scene) {
    AnyView view;
    size_t faces = 0;
    for (const auto& pNode : scene.GetNodes()) {
        bool needDelete = false;
        Mesh* pMesh =
            static_cast<GeomObject*>(pNode->EvalWorldState(0).obj)->GetRenderMesh(0, pNode.get(), view, needDelete);
        faces += static_cast<size_t>(pMesh->numFaces);
        if (needDelete)
            pMesh->DeleteThis();
    }
    return faces;
}

// From the file to the meshes, one after the other; items are vertices.
void LoadAndBuildMeshes(benchmark::State& state) {
    const auto vertices = static_cast<int>(state.range(0));
    const Grid grid(std::min(vertices, s_LargestSide * s_LargestSide));
    const int meshes = std::max(1, vertices / grid.GetVertexCount());
    const TemporaryFile file(MakeGlb(grid, meshes));
    for (auto _ : state)
        benchmark::DoNotOptimize(BuildAllMeshes(*gltf::Load(file.GetPath(), {}, {})));
    state.SetItemsProcessed(state.iterations() * meshes * grid.GetVertexCount());
}
BENCHMARK(LoadAndBuildMeshes)->RangeMultiplier(10)->Range(100, 1000000)->Unit(benchmark::kMicrosecond);

// The file alone: JSON, nodes, checks. Items are nodes with a mesh each.
void LoadSmallMeshes(benchmark::State& state) {
    const Grid grid(9);
    const TemporaryFile file(MakeGlb(grid, static_cast<int>(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(gltf::Load(file.GetPath(), {}, {}));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(LoadSmallMeshes)->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);

// Every position six times, as in a mesh whose triangles share no vertex.
void WeldCorners(benchmark::State& state) {
    const auto count = static_cast<uint32_t>(state.range(0));
    std::vector<uint32_t> words;
    for (uint32_t i = 0; i < count; ++i)
        for (const uint32_t word : {i / 6, i / 6 * 7919u, 5u})
            words.push_back(word * 2654435761u);
    for (auto _ : state)
        benchmark::DoNotOptimize(gltf::Weld({.words = words}));
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(WeldCorners)->Arg(1000)->Arg(60000);

// A roof of many ridges: every other row of edges is hard. Items are faces.
void SmoothHardEdges(benchmark::State& state) {
    const auto side = static_cast<uint32_t>(std::sqrt(static_cast<double>(state.range(0)) / 2.0));
    std::vector<uint32_t> corners;
    std::vector<uint32_t> positions;
    std::vector<glm::vec3> normals;
    for (uint32_t y = 0; y < side; ++y)
        for (uint32_t x = 0; x < side; ++x) {
            const auto first = static_cast<uint32_t>(positions.size());
            for (const uint32_t corner : {0u, 1u, side + 1, side + 2}) {
                positions.push_back(y * (side + 1) + x + corner);
                normals.emplace_back(0.0f, y % 2 ? 0.7f : -0.7f, 0.7f);
            }
            for (const uint32_t corner : {0u, 1u, 2u, 2u, 1u, 3u})
                corners.push_back(first + corner);
        }
    const gltf::SmoothingInput input{
        .corners = corners, .positions = positions, .positionCount = (side + 1) * (side + 1), .normals = normals};
    for (auto _ : state)
        benchmark::DoNotOptimize(gltf::MakeSmoothingGroups(input));
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(corners.size() / 3));
}
BENCHMARK(SmoothHardEdges)->Arg(200)->Arg(20000);

} // namespace
