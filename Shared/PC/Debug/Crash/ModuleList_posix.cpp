#include "Shared/PC/Debug/Crash/ModuleList.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <span>

#include <elf.h>
#include <sys/stat.h>

namespace {

constexpr uint64_t s_MostNoteBytes = uint64_t{64} * 1024;

template <typename T>
std::optional<T> ReadAt(std::ifstream& file, uint64_t position) {
    T value;
    file.clear();
    if (!file.seekg(static_cast<std::streamoff>(position)) || !file.read(reinterpret_cast<char*>(&value), sizeof value))
        return {};
    return value;
}

uint64_t Align(uint64_t size) { return (size + 3) / 4 * 4; }

// Of the build, among the notes of one segment; 0 if it isn't there.
uint32_t FindBuildStamp(std::ifstream& file, const Elf64_Phdr& segment) {
    const uint64_t end = std::min(segment.p_filesz, s_MostNoteBytes);
    for (uint64_t at = 0; at + sizeof(Elf64_Nhdr) <= end;) {
        const auto note = ReadAt<Elf64_Nhdr>(file, segment.p_offset + at);
        if (!note)
            return 0;
        const uint64_t contents = at + sizeof *note + Align(note->n_namesz);
        if (note->n_type == NT_GNU_BUILD_ID && note->n_descsz >= 4) {
            const auto bytes = ReadAt<std::array<uint8_t, 4>>(file, segment.p_offset + contents);
            return bytes ? uint32_t{(*bytes)[0]} << 24 | uint32_t{(*bytes)[1]} << 16 | uint32_t{(*bytes)[2]} << 8 |
                               (*bytes)[3]
                         : 0;
        }
        at = contents + Align(note->n_descsz);
    }
    return 0;
}

uint32_t ReadStamp(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const auto header = ReadAt<Elf64_Ehdr>(file, 0);
    if (!header || !std::equal(header->e_ident, header->e_ident + SELFMAG, ELFMAG) ||
        header->e_phentsize != sizeof(Elf64_Phdr))
        return 0;
    for (uint32_t i = 0; i < header->e_phnum; ++i) {
        const auto segment = ReadAt<Elf64_Phdr>(file, header->e_phoff + i * sizeof(Elf64_Phdr));
        if (!segment)
            return 0;
        if (segment->p_type != PT_NOTE)
            continue;
        if (const uint32_t stamp = FindBuildStamp(file, *segment))
            return stamp;
    }
    return 0;
}

void FillFromFile(CrashedModule& module) {
    struct stat status = {};
    if (stat(module.path.c_str(), &status) != 0)
        return;
    module.fileTime = status.st_mtime;
    module.stamp = ReadStamp(module.path);
}

} // namespace

std::vector<CrashedModule> ListModules(const std::vector<Mapping>& mappings) {
    std::vector<CrashedModule> modules;
    for (size_t first = 0; first < mappings.size();) {
        // The pieces of a file lie together, perhaps with plain memory in between or behind.
        const std::string& path = mappings[first].path;
        size_t behind = first;
        bool hasCode = false;
        uint64_t end = mappings[first].end;
        for (; behind < mappings.size() && (mappings[behind].path == path || mappings[behind].path.empty()); ++behind)
            if (mappings[behind].path == path) {
                hasCode |= mappings[behind].isExecutable;
                end = mappings[behind].end;
            }
        if (hasCode && path.starts_with('/')) {
            CrashedModule& module = modules.emplace_back();
            module.path = path;
            module.start = mappings[first].start;
            module.size = end - module.start;
            FillFromFile(module);
        }
        first = behind;
    }
    return modules;
}
