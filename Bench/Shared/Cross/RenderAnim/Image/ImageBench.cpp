// Pictures of a megapixel: loading against a plain read of the file, both once in fresh memory, as a tool loads each of
// its pictures, and again and again in the same; and the work on pixels. Items are pixels, so that the inverse of items
// a second is the time for a pixel. PVX_BENCH_PICTURE names a TGA to use in place of the made-up one, as
// Bench/compare-images.sh does.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "Bench/TimeInOwnProcess.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/RenderAnim/Image/DxtcCompression.h"
#include "Shared/Cross/RenderAnim/Image/ImageConvert.h"
#include "Shared/Cross/RenderAnim/Image/ImageLoad.h"
#include "Shared/Cross/RenderAnim/Image/MipMap.h"
#include "Shared/Cross/RenderAnim/Image/Palettize.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Tests/Shared/Cross/RenderAnim/Image/DxtcDecoder.h"

namespace {

constexpr uint32_t s_Side = 1024;

std::unique_ptr<Image> Load(const std::string& name) {
    uint32_t flags = 0;
    return ImageLoad::Load(flags, name.c_str());
}

// Slopes, edges and grain, about as hard on a compressor as a painted texture.
std::unique_ptr<Image> MakePicture() {
    std::unique_ptr<Image> pImage = Image::Create(IMAGETYPE_RGBA32, s_Side, s_Side);
    uint32_t grain = 1;
    uint32_t i = 0;
    for (Colour& colour : ImageCast<Image_RGBA32>(pImage.get())->GetPixels()) {
        const double x = i % s_Side / 64.0;
        const double y = i++ / s_Side / 64.0;
        grain = grain * 1664525u + 1013904223u;
        const double light =
            100 + 60 * std::sin(x) * std::cos(y * 1.7) + (std::sin(x * 3 + y) > 0.7 ? 40 : 0) + (grain >> 28);
        colour = {.b = static_cast<uint8_t>(light * 0.6 + 20 * std::sin(y)),
                  .g = static_cast<uint8_t>(light * 0.8),
                  .r = static_cast<uint8_t>(light + 20 * std::cos(x * 0.5)),
                  .a = 255};
    }
    return pImage;
}

// A folder with files of the picture under the alias "DATA". Made once, elsewhere, so that this process's memory is
// still fresh.
class Pictures {
public:
    static const Pictures& Get() {
        static const Pictures s_Pictures;
        return s_Pictures;
    }
    std::string GetNative(const std::string& name) const { return (m_Folder / name).string(); }
    ~Pictures() { std::filesystem::remove_all(m_Folder); }
    Pictures(const Pictures&) = delete;
    Pictures& operator=(const Pictures&) = delete;

private:
    Pictures() {
        std::string pattern = (std::filesystem::temp_directory_path() / "pvximagebenchXXXXXX").string();
        m_Folder = mkdtemp(pattern.data());
        const std::string root = OSFile::FromNative(m_Folder.string()) + "\\";
        FilePath::AddSource("DATA", "bench", 0, FilePathHD::Create(root.c_str(), FilePath::Mode::Mode_Both));
        RunInOwnProcess([&] { MakeFiles(); });
    }

    void MakeFiles() const {
        const char* pGiven = std::getenv("PVX_BENCH_PICTURE");
        if (pGiven)
            std::filesystem::copy(pGiven, GetNative("given.tga"));
        const std::unique_ptr<Image> pPicture = pGiven ? Load("given.tga") : MakePicture();
        if (!pPicture || pPicture->GetWidth() != s_Side || pPicture->GetHeight() != s_Side) {
            std::fprintf(stderr, "PVX_BENCH_PICTURE is no TGA of 1024 by 1024 pixels that can be read\n");
            std::_Exit(1);
        }
        ImageLoad::Save("tiny.tga", *Image::Create(IMAGETYPE_RGBA32, 4, 4));
        ImageLoad::Save("32.tga", *pPicture);
        ImageLoad::Save("24.tga", *Convert(IMAGETYPE_RGB888, *pPicture));
        ImageLoad::Save("100.jpg", *pPicture);
        const std::unique_ptr<Image> pLevels = Convert(IMAGETYPE_RGBA32, *pPicture);
        CreateMipLevels(*pLevels, 11);
        ImageLoad::Save("1.dds", *CompressImage(*pLevels, IMAGETYPE_DXT1));
        ImageLoad::Save("5.dds", *CompressImage(*pLevels, IMAGETYPE_DXT5));
    }

    std::filesystem::path m_Folder;
};

const Image& GetPicture() {
    Pictures::Get();
    static const std::unique_ptr<Image> s_pPicture = Load("32.tga");
    return *s_pPicture;
}

constexpr const char* s_Files[] = {"32.tga", "24.tga", "1.dds", "5.dds", "100.jpg"};

// What loading is held against: the file into a block of memory of its size.
void ReadWhole(const std::string& path) {
    const auto size = static_cast<size_t>(std::filesystem::file_size(path));
    std::FILE* pFile = std::fopen(path.c_str(), "rb");
    std::setvbuf(pFile, nullptr, _IONBF, 0);
    const auto pBlock = std::make_unique_for_overwrite<uint8_t[]>(size);
    if (std::fread(pBlock.get(), 1, size, pFile) != size)
        std::abort();
    std::fclose(pFile);
    benchmark::DoNotOptimize(pBlock.get());
}

void ReadPlain(benchmark::State& state) {
    const char* pName = s_Files[state.range(0)];
    const std::string path = Pictures::Get().GetNative(pName);
    state.SetLabel(pName);
    for (auto _ : state)
        ReadWhole(path);
}

void LoadFile(benchmark::State& state) {
    Pictures::Get();
    const char* pName = s_Files[state.range(0)];
    state.SetLabel(pName);
    for (auto _ : state)
        benchmark::DoNotOptimize(Load(pName));
    state.SetItemsProcessed(state.iterations() * s_Side * s_Side);
}

void FirstReadPlain(benchmark::State& state) {
    const char* pName = s_Files[state.range(0)];
    const std::string path = Pictures::Get().GetNative(pName);
    state.SetLabel(pName);
    for (auto _ : state)
        state.SetIterationTime(TimeInOwnProcess([] {}, [&] { ReadWhole(path); }));
}

// What the library does but once, it does for a picture of some pixels.
void FirstLoadFile(benchmark::State& state) {
    Pictures::Get();
    const char* pName = s_Files[state.range(0)];
    state.SetLabel(pName);
    for (auto _ : state)
        state.SetIterationTime(
            TimeInOwnProcess([] { Load("tiny.tga"); }, [&] { benchmark::DoNotOptimize(Load(pName)); }));
    state.SetItemsProcessed(state.iterations() * s_Side * s_Side);
}

void MakeLevels(benchmark::State& state) {
    const std::unique_ptr<Image> pImage =
        state.range(0) == IMAGETYPE_RGBA32 ? Convert(IMAGETYPE_RGBA32, GetPicture()) : Palettize(GetPicture());
    for (auto _ : state)
        benchmark::DoNotOptimize(CreateMipLevels(*pImage, 11));
    state.SetItemsProcessed(state.iterations() * s_Side * s_Side);
}

void Reduce(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(Rescale(GetPicture(), 700, 600));
    state.SetItemsProcessed(state.iterations() * s_Side * s_Side);
}

void MakePalette(benchmark::State& state) {
    std::unique_ptr<Image_Palette> pResult;
    for (auto _ : state)
        pResult = Palettize(GetPicture());
    state.SetItemsProcessed(state.iterations() * s_Side * s_Side);
    state.counters["PSNR"] = DxtcDecoder::GetPsnr(*Convert(IMAGETYPE_RGBA32, *pResult), GetPicture(), false);
}

void Compress(benchmark::State& state) {
    const auto format = static_cast<ImageType>(state.range(0));
    const auto quality = state.range(1) ? DxtcQuality::Best : DxtcQuality::Fast;
    std::unique_ptr<Image> pResult;
    for (auto _ : state)
        pResult = CompressImage(GetPicture(), format, quality);
    state.SetItemsProcessed(state.iterations() * s_Side * s_Side);
    state.counters["PSNR"] = DxtcDecoder::GetPsnr(*DxtcDecoder::Decode(*pResult), GetPicture(), false);
}

} // namespace

// First, as long as nothing was freed.
BENCHMARK(FirstReadPlain)->DenseRange(0, 4)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(FirstLoadFile)->DenseRange(0, 4)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ReadPlain)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(LoadFile)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK(MakeLevels)->Arg(IMAGETYPE_RGBA32)->Arg(IMAGETYPE_PALETTE8)->ArgName("type")->Unit(benchmark::kMillisecond);
BENCHMARK(Reduce)->Unit(benchmark::kMillisecond);
BENCHMARK(MakePalette)->Unit(benchmark::kMillisecond);
BENCHMARK(Compress)
    ->ArgsProduct({{IMAGETYPE_DXT1, IMAGETYPE_DXT3, IMAGETYPE_DXT5}, {0, 1}})
    ->ArgNames({"format", "best"})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
