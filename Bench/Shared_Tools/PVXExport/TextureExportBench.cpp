// Pictures on their way into a model: eight of 1024 by 1024 pixels in a project of their own, on one quad. Reading them
// alone stands beside the whole export, and the writing of as many bytes beside both.

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Host/Scene/Build.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Shared_Tools/PVXExport/ModuleResources.h"
#include "Shared_Tools/PVXExport/PVXExport.h"
#include "Shared_Tools/PVXExport/PVXUtil.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"
#include "Tests/Shared_Tools/PVXExport/ProjectFolder.h"

namespace {

constexpr uint32_t s_Side = 1024;
constexpr uint32_t s_Count = 8; // pictures
constexpr uint32_t s_Bits = 32;

int s_Module;

// A project with the pictures; gone at its end.
class PictureFolder {
public:
    PictureFolder() {
        m_Folder.MakeFolder("DataSource");
        m_Folder.MakeFolder("REFERENCE");
        for (uint32_t i = 0; i < s_Count; ++i)
            WritePicture(i);
    }

    std::filesystem::path GetNative(const std::string& name) const { return m_Folder.Native(name); }
    std::string GetPath(const std::string& name) const { return m_Folder.Path(name); }
    std::string GetPicture(uint32_t index) const { return GetPath("DataSource/" + std::to_string(index) + ".tga"); }

private:
    void WritePicture(uint32_t index) const {
        std::string bytes(18, '\0');
        bytes[2] = 2;
        bytes[13] = bytes[15] = static_cast<char>(s_Side >> 8);
        bytes[16] = static_cast<char>(s_Bits);
        std::mt19937 random(index);
        for (size_t i = 0; i < size_t{s_Side} * s_Side * s_Bits / 8; ++i)
            bytes += static_cast<char>(random());
        m_Folder.Write("DataSource/" + std::to_string(index) + ".tga", bytes);
    }

    TempFolder m_Folder;
    ProjectFolder m_Project{m_Folder};
};

void CountPixels(benchmark::State& state) {
    state.counters["megapixels"] =
        benchmark::Counter(s_Count * s_Side * s_Side / 1e6, benchmark::Counter::kIsIterationInvariantRate);
}

void ReadPictures(benchmark::State& state) {
    const PictureFolder folder;
    FilePath::AddSource("TOOL", "HD", 99, std::make_shared<FilePathHDRaw>(false));
    for (auto _ : state)
        for (uint32_t i = 0; i < s_Count; ++i) {
            uint32_t flags = 0;
            benchmark::DoNotOptimize(ImageLoad::Load(flags, ("TOOL:" + folder.GetPicture(i)).c_str()));
        }
    FilePath::RemoveSource("TOOL", "HD");
    CountPixels(state);
}

// What any program would need for files of that size: pictures in, one file out.
void CopyPictures(benchmark::State& state) {
    const PictureFolder folder;
    for (auto _ : state) {
        std::ofstream out(folder.GetNative("REFERENCE/Copy"), std::ios::binary);
        for (uint32_t i = 0; i < s_Count; ++i) {
            const std::filesystem::path name = folder.GetNative("DataSource/" + std::to_string(i) + ".tga");
            std::vector<char> bytes(std::filesystem::file_size(name));
            std::ifstream(name, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
            out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        }
    }
    CountPixels(state);
}

// Each picture on as many materials.
void ExportPictures(benchmark::State& state) {
    const auto handle = reinterpret_cast<HINSTANCE>(&s_Module);
    PVXUtil::SetDLLInstance(handle);
    RegisterModuleResources(handle);
    const PictureFolder folder;
    scene::Scene scene;
    std::vector<Mtl*> materials;
    for (uint32_t i = 0; i < s_Count * static_cast<uint32_t>(state.range(0)); ++i) {
        scene::StandardSettings settings;
        settings.maps[ID_DI].pMap = &scene.Make<scene::Bitmap>("Map", folder.GetPicture(i % s_Count));
        materials.push_back(&scene.Make<scene::StandardMaterial>("Paint" + std::to_string(i), settings));
        Mesh mesh;
        mesh.setNumVerts(3);
        mesh.verts = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
        mesh.setNumFaces(1);
        mesh.faces[0].setVerts(0, 1, 2);
        scene::AddMesh(scene, "Mesh" + std::to_string(i), std::move(mesh), materials.back());
    }
    const std::string path = folder.GetPath("REFERENCE/REF.pvx");
    for (auto _ : state) {
        PVXExport exporter;
        if (exporter.DoExport(path.c_str(), nullptr, &scene, true) != 1)
            state.SkipWithError("the export failed");
    }
    if (std::filesystem::file_size(folder.GetNative("REFERENCE/REF.pvx")) < uint64_t{s_Count} * s_Side * s_Side * 4)
        state.SkipWithError("the pictures aren't in the file");
    CountPixels(state);
}

BENCHMARK(CopyPictures)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ReadPictures)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(ExportPictures)->Arg(1)->Arg(100)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
