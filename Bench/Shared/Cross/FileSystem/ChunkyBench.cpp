#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/PC/FileSystem/DiskFileStream.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <vector>

// A model file of some 50 MB on disk, written and read as a model is: thousands of chunks, their fields one at a time
// and their arrays at once. The argument is the size of each chunk's array in bytes.

namespace {

constexpr uint32_t s_FileSize = 50'000'000;
constexpr uint32_t s_FieldCount = 16;

class TempFile {
public:
    TempFile() {
        std::string pattern = (std::filesystem::temp_directory_path() / "PvxBench.XXXXXX").string();
        OSFile::Close({mkstemp(pattern.data())});
        m_Native = pattern;
        m_Path = OSFile::FromNative(pattern);
    }
    ~TempFile() { std::filesystem::remove(m_Native); }

    std::unique_ptr<ByteStream> Open(ByteStream::Mode mode) const { return OpenFile(m_Path.c_str(), mode, true); }

private:
    std::string m_Native;
    std::string m_Path;
};

bool WriteModel(ByteStream& stream, const std::vector<uint8_t>& array) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    ByteStreamAdapter& adapter = chunky.GetStream();
    chunky.BeginFolder(FourCC("ROOT"), 1);
    while (stream.GetPos() < s_FileSize) {
        chunky.BeginFolder(FourCC("MESH"), 1, "some_mesh");
        chunky.BeginData(FourCC("VERT"), 1);
        for (uint32_t i = 0; i < s_FieldCount; ++i)
            adapter.WriteValue(i);
        adapter.Write(array.data(), static_cast<uint32_t>(array.size()));
        chunky.EndChunk();
        chunky.EndChunk();
    }
    chunky.EndChunk();
    return stream.Flush();
}

void ReadModel(ByteStream& stream, std::vector<uint8_t>& array) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    ByteStreamAdapter& adapter = chunky.GetStream();
    chunky.EnterFolder(FourCC("ROOT"), 1);
    ChunkInfo info;
    while (chunky.NextChunk(info)) {
        chunky.EnterFolder(FourCC("MESH"), 1);
        chunky.EnterData(FourCC("VERT"), 1);
        uint32_t field = 0;
        for (uint32_t i = 0; i < s_FieldCount; ++i)
            adapter.ReadValue(field);
        adapter.Read(array.data(), static_cast<uint32_t>(array.size()));
        chunky.EndChunk();
        chunky.EndChunk();
    }
    chunky.EndChunk();
}

// What the disk itself takes, in blocks of 256 KB.
void WritePlain(benchmark::State& state) {
    const TempFile file;
    const std::vector<uint8_t> block(0x40000, 1);
    for ([[maybe_unused]] auto _ : state) {
        const auto pStream = file.Open(ByteStream::Mode_Write);
        while (pStream->GetPos() < s_FileSize)
            pStream->Write(block.data(), static_cast<uint32_t>(block.size()));
        if (!pStream->Flush())
            state.SkipWithError("can't write");
    }
    state.SetBytesProcessed(state.iterations() * s_FileSize);
}
BENCHMARK(WritePlain)->Unit(benchmark::kMillisecond);

void WriteChunky(benchmark::State& state) {
    const TempFile file;
    const std::vector<uint8_t> array(static_cast<size_t>(state.range(0)), 1);
    for ([[maybe_unused]] auto _ : state) {
        const auto pStream = file.Open(ByteStream::Mode_Write);
        if (!WriteModel(*pStream, array))
            state.SkipWithError("can't write");
    }
    state.SetBytesProcessed(state.iterations() * s_FileSize);
}
BENCHMARK(WriteChunky)->Unit(benchmark::kMillisecond)->Arg(1'000)->Arg(10'000)->Arg(1'000'000);

void ReadChunky(benchmark::State& state) {
    const TempFile file;
    std::vector<uint8_t> array(static_cast<size_t>(state.range(0)), 1);
    WriteModel(*file.Open(ByteStream::Mode_Write), array);
    for ([[maybe_unused]] auto _ : state)
        ReadModel(*file.Open(ByteStream::Mode_Read), array);
    state.SetBytesProcessed(state.iterations() * s_FileSize);
}
BENCHMARK(ReadChunky)->Unit(benchmark::kMillisecond)->Arg(1'000)->Arg(10'000)->Arg(1'000'000);

// Over all of it by seeks.
void SkipChunky(benchmark::State& state) {
    const TempFile file;
    const std::vector<uint8_t> array(static_cast<size_t>(state.range(0)), 1);
    WriteModel(*file.Open(ByteStream::Mode_Write), array);
    for ([[maybe_unused]] auto _ : state) {
        const auto pStream = file.Open(ByteStream::Mode_Read);
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        chunky.EnterFolder(FourCC("ROOT"), 1);
        ChunkInfo info;
        while (chunky.NextChunk(info))
            benchmark::DoNotOptimize(info);
    }
    state.SetBytesProcessed(state.iterations() * s_FileSize);
}
BENCHMARK(SkipChunky)->Unit(benchmark::kMillisecond)->Arg(1'000)->Arg(1'000'000);

} // namespace
