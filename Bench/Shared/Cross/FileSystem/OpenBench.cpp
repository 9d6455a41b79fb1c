#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/PC/FileSystem/DiskFileStream.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <benchmark/benchmark.h>

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// Opening 10,000 files, reading a few bytes of each: by the system's own calls with exact names, and through an alias
// whose root is in upper case, with exact names below it and with names in another case. The second and third are to
// take at most twice the first.

namespace {

constexpr int s_FileCount = 10'000;
constexpr int s_FolderCount = 100;

// A tree in mixed case; made once, removed at the end.
class Tree {
public:
    Tree() {
        std::string pattern = (std::filesystem::temp_directory_path() / "PvxBench.XXXXXX").string();
        m_Root = std::filesystem::path(mkdtemp(pattern.data())) / "Project" / "Data";
        for (int i = 0; i < s_FileCount; ++i) {
            const std::string name =
                "Art/Folder" + std::to_string(i % s_FolderCount) + "/Texture" + std::to_string(i) + ".Tga";
            std::filesystem::create_directories((m_Root / name).parent_path());
            std::ofstream(m_Root / name) << "some content";
            native.push_back(m_Root / name);
            alias.push_back("DATA:" + name);
            otherCase.push_back("DATA:" + name);
            for (size_t at = 5; at < name.size() + 5; ++at)
                otherCase.back()[at] = static_cast<char>(std::tolower(otherCase.back()[at]));
        }
        std::string root = OSFile::FromNative(m_Root.string());
        for (char& character : root)
            character = static_cast<char>(std::toupper(character));
        FilePath::AddSource("DATA", "root", 1, FilePathHD::Create(root.c_str(), ByteStream::Mode_Read));
    }
    ~Tree() {
        FilePath::RemoveSource("DATA", "root");
        std::filesystem::remove_all(m_Root.parent_path().parent_path());
    }
    static Tree& Get() {
        static Tree s_Tree;
        return s_Tree;
    }

    std::vector<std::string> native, alias, otherCase;

private:
    std::filesystem::path m_Root;
};

void OpenPlain(benchmark::State& state) {
    const Tree& tree = Tree::Get();
    for ([[maybe_unused]] auto _ : state) {
        for (const std::string& name : tree.native) {
            const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
            struct stat facts {};
            char bytes[64];
            if (fstat(file, &facts) != 0 || read(file, bytes, sizeof(bytes)) <= 0)
                state.SkipWithError("can't read");
            close(file);
        }
    }
    state.SetItemsProcessed(state.iterations() * s_FileCount);
}
BENCHMARK(OpenPlain)->Unit(benchmark::kMillisecond);

// Every iteration is as a new one of the program's runs would be, but for the first, which reads the folders.
void OpenAll(benchmark::State& state, const std::vector<std::string>& names) {
    for ([[maybe_unused]] auto _ : state) {
        for (const std::string& name : names) {
            const auto pStream = FilePath::OpenStream(name.c_str(), ByteStream::Mode_Read);
            char bytes[64];
            if (!pStream || pStream->Read(bytes, sizeof(bytes)) == 0)
                state.SkipWithError("can't read");
        }
    }
    state.SetItemsProcessed(state.iterations() * s_FileCount);
}

void OpenThroughAlias(benchmark::State& state) { OpenAll(state, Tree::Get().alias); }
BENCHMARK(OpenThroughAlias)->Unit(benchmark::kMillisecond);

void OpenThroughAliasInOtherCase(benchmark::State& state) { OpenAll(state, Tree::Get().otherCase); }
BENCHMARK(OpenThroughAliasInOtherCase)->Unit(benchmark::kMillisecond);

} // namespace
