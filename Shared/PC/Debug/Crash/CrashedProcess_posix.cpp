#include "Shared/PC/Debug/Crash/CrashedProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <sstream>

#include <unistd.h>

namespace {

bool Receive(int descriptor, void* pDest, size_t size) {
    char* pBytes = static_cast<char*>(pDest);
    while (size != 0) {
        const ssize_t received = read(descriptor, pBytes, size);
        if (received < 0 && errno == EINTR)
            continue;
        if (received <= 0)
            return false;
        pBytes += received;
        size -= static_cast<size_t>(received);
    }
    return true;
}

template <size_t Size>
void EndText(char (&text)[Size]) {
    text[Size - 1] = '\0';
}

// The crash may have hit the record, too.
void Repair(CrashRecord& record) {
    EndText(record.executable);
    EndText(record.configFolder);
    EndText(record.logFolder);
    EndText(record.reporterFolder);
    EndText(record.reporterConfig);
    EndText(record.version);
    EndText(record.language);
    record.codeCount = std::min(record.codeCount, CrashRecord::MaxCodeBytes);
    record.textCount = std::min(record.textCount, CrashRecord::MaxTexts);
    record.fileCount = std::min(record.fileCount, CrashRecord::MaxFiles);
    for (auto& text : record.texts)
        EndText(text);
    for (CrashReportFile& file : record.files)
        EndText(file.name);
}

std::string FileNameOf(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

} // namespace

std::vector<Mapping> ParseMappings(const std::string& text) {
    std::vector<Mapping> mappings;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        Mapping mapping;
        char access[5] = {};
        int pathAt = 0;
        if (std::sscanf(line.c_str(), "%" SCNx64 "-%" SCNx64 " %4s %" SCNx64 " %*s %*s %n", &mapping.start,
                        &mapping.end, access, &mapping.offset, &pathAt) < 4 ||
            mapping.end <= mapping.start)
            continue;
        mapping.isReadable = access[0] == 'r';
        mapping.isWritable = access[1] == 'w';
        mapping.isExecutable = access[2] == 'x';
        mapping.isShared = access[3] == 's';
        if (pathAt > 0)
            mapping.path = line.substr(std::min(static_cast<size_t>(pathAt), line.size()));
        mappings.push_back(std::move(mapping));
    }
    return mappings;
}

CrashedProcess::CrashedProcess(const CrashRecord& record, std::string maps)
    : m_Record(record), m_Maps(std::move(maps)), m_Mappings(ParseMappings(m_Maps)) {
    Repair(m_Record);
}

std::optional<CrashedProcess> CrashedProcess::Receive(int descriptor) {
    CrashRecord record;
    if (!::Receive(descriptor, &record, sizeof record) || record.size != sizeof record)
        return {};
    std::string maps;
    std::vector<std::pair<uint64_t, std::vector<std::byte>>> stack;
    for (CrashBlock block; ::Receive(descriptor, &block, sizeof block) && block.size <= CrashBlock::MaxSize;) {
        std::vector<std::byte> bytes(block.size);
        if (!::Receive(descriptor, bytes.data(), bytes.size()))
            break;
        if (block.kind == CrashBlock::Kind_Maps)
            maps.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        else
            stack.emplace_back(block.address, std::move(bytes));
    }
    CrashedProcess process(record, std::move(maps));
    for (const auto& [address, bytes] : stack)
        process.AddStack(address, bytes);
    return process;
}

void CrashedProcess::AddStack(uint64_t address, std::span<const std::byte> bytes) {
    // What follows on another piece is joined with it, so that a word may lie across the border.
    if (!m_Stack.empty()) {
        auto& [start, last] = *m_Stack.rbegin();
        if (start + last.size() == address) {
            last.insert(last.end(), bytes.begin(), bytes.end());
            return;
        }
    }
    m_Stack[address].assign(bytes.begin(), bytes.end());
}

const Mapping* CrashedProcess::FindMapping(uint64_t address) const {
    const auto it = std::ranges::find_if(
        m_Mappings, [=](const Mapping& mapping) { return mapping.start <= address && address < mapping.end; });
    return it != m_Mappings.end() ? &*it : nullptr;
}

bool CrashedProcess::ReadWord(uint64_t address, uint64_t& word) const {
    const auto behind = m_Stack.upper_bound(address);
    if (behind == m_Stack.begin())
        return false;
    const auto& [start, bytes] = *std::prev(behind);
    const uint64_t at = address - start;
    if (at >= bytes.size() || bytes.size() - at < sizeof word)
        return false;
    std::memcpy(&word, bytes.data() + at, sizeof word);
    return true;
}

std::string CrashedProcess::GetModuleName(uint64_t address) const {
    const Mapping* pMapping = FindMapping(address);
    return pMapping && !pMapping->path.empty() ? FileNameOf(pMapping->path) : "Unknown";
}

std::string CrashedProcess::GetExecutableName() const { return FileNameOf(m_Record.executable); }
