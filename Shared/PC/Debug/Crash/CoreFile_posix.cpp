#include "Shared/PC/Debug/Crash/CoreFile.h"

#include "Shared/PC/Debug/Crash/CoreNotes.h"
#include "Shared/PC/Debug/Crash/CrashedProcess.h"
#include "Shared/PC/Debug/Crash/StoppedProcess.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <span>
#include <sstream>
#include <utility>
#include <vector>

#include <elf.h>
#include <fcntl.h>
#include <unistd.h>

// Layout: the header, one program header for the notes and one for each mapping, by address; the notes; from a page's
// start on, the memory of the mappings that are taken along, in the same order.

namespace {

constexpr uint64_t s_PageSize = 4096;
constexpr size_t s_MostMappings = 60000; // what the header can count, and some more

class File {
public:
    File(const std::string& path, int flags) : m_File(open(path.c_str(), flags | O_CLOEXEC, 0600)) {}
    ~File() { Close(); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    bool IsOpen() const { return m_File >= 0; }
    bool Write(uint64_t position, std::span<const std::byte> bytes) const {
        while (!bytes.empty()) {
            const ssize_t written = pwrite(m_File, bytes.data(), bytes.size(), static_cast<off_t>(position));
            if (written < 0 && errno == EINTR)
                continue;
            if (written <= 0)
                return false;
            position += static_cast<uint64_t>(written);
            bytes = bytes.subspan(static_cast<size_t>(written));
        }
        return true;
    }
    // How much is there in one piece.
    size_t Read(uint64_t position, std::span<std::byte> bytes) const {
        const ssize_t count = pread(m_File, bytes.data(), bytes.size(), static_cast<off_t>(position));
        return count > 0 ? static_cast<size_t>(count) : 0;
    }
    bool SetSize(uint64_t size) const { return ftruncate(m_File, static_cast<off_t>(size)) == 0; }
    bool Close() {
        const int file = std::exchange(m_File, -1);
        return file < 0 || close(file) == 0;
    }

private:
    int m_File;
};

struct Segment {
    Mapping mapping;
    uint64_t anonymous = 0; // bytes that are not, or no longer, those of a file
    bool isTaken = false;

    uint64_t GetSize() const { return mapping.end - mapping.start; }
    bool IsWorthTaking() const {
        return mapping.isReadable && !mapping.isShared &&
               (anonymous != 0 || mapping.path == "[vdso]" || mapping.path == "[stack]");
    }
};

// The system's list of mappings again, with what it tells of each one's memory.
std::vector<Segment> ListSegments(int process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/smaps");
    std::vector<Segment> segments;
    for (std::string line; std::getline(file, line);) {
        unsigned long long kilobytes = 0;
        if (std::sscanf(line.c_str(), "Anonymous: %llu kB", &kilobytes) == 1 && !segments.empty())
            segments.back().anonymous = uint64_t{kilobytes} * 1024;
        else if (const auto mappings = ParseMappings(line); !mappings.empty() && segments.size() < s_MostMappings)
            segments.push_back({.mapping = mappings.front()});
    }
    return segments;
}

void ChooseSegments(std::vector<Segment>& segments, uint64_t stackPointer, uint64_t mostBytes) {
    std::vector<Segment*> order;
    for (Segment& segment : segments)
        if (segment.IsWorthTaking())
            order.push_back(&segment);
    const auto rank = [=](const Segment* pSegment) {
        // An exhausted stack's pointer may lie just below its memory.
        constexpr uint64_t s_Near = uint64_t{64} * 1024;
        const Mapping& mapping = pSegment->mapping;
        const bool isStack = stackPointer + s_Near >= mapping.start && stackPointer < mapping.end;
        return std::pair(!isStack, pSegment->GetSize());
    };
    std::ranges::stable_sort(order, {}, rank);
    for (Segment* pSegment : order) {
        pSegment->isTaken = pSegment->GetSize() <= mostBytes;
        if (pSegment->isTaken)
            mostBytes -= pSegment->GetSize();
    }
}

Elf64_Ehdr MakeHeader(size_t programHeaderCount) {
    Elf64_Ehdr header = {};
    std::copy_n(ELFMAG, SELFMAG, header.e_ident);
    header.e_ident[EI_CLASS] = ELFCLASS64;
    header.e_ident[EI_DATA] = ELFDATA2LSB;
    header.e_ident[EI_VERSION] = EV_CURRENT;
    header.e_type = ET_CORE;
    header.e_machine = EM_X86_64;
    header.e_version = EV_CURRENT;
    header.e_phoff = sizeof header;
    header.e_ehsize = sizeof header;
    header.e_phentsize = sizeof(Elf64_Phdr);
    header.e_phnum = static_cast<Elf64_Half>(programHeaderCount);
    return header;
}

Elf64_Phdr MakeProgramHeader(const Segment& segment, uint64_t position) {
    const Mapping& mapping = segment.mapping;
    Elf64_Phdr header = {};
    header.p_type = PT_LOAD;
    header.p_flags = static_cast<Elf64_Word>((mapping.isReadable ? PF_R : 0) | (mapping.isWritable ? PF_W : 0) |
                                             (mapping.isExecutable ? PF_X : 0));
    header.p_offset = position;
    header.p_vaddr = mapping.start;
    header.p_filesz = segment.isTaken ? segment.GetSize() : 0;
    header.p_memsz = segment.GetSize();
    header.p_align = s_PageSize;
    return header;
}

// Of at least one byte.
bool IsZero(std::span<const std::byte> bytes) {
    return bytes[0] == std::byte{0} && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0;
}

// What is zero, or can't be read, becomes a hole in the file.
bool CopyPages(const File& to, uint64_t position, std::span<const std::byte> bytes) {
    for (size_t at = 0; at < bytes.size(); at += s_PageSize) {
        const auto page = bytes.subspan(at, std::min<size_t>(s_PageSize, bytes.size() - at));
        if (!IsZero(page) && !to.Write(position + at, page))
            return false;
    }
    return true;
}

bool CopySegment(const File& to, uint64_t position, const File& memory, const Mapping& mapping) {
    std::vector<std::byte> block(256 * s_PageSize);
    for (uint64_t address = mapping.start; address < mapping.end;) {
        const auto wanted = std::min<uint64_t>(block.size(), mapping.end - address);
        const size_t size = memory.Read(address, std::span(block).first(wanted));
        if (!CopyPages(to, position + (address - mapping.start), std::span(block).first(size)))
            return false;
        // Past a page that isn't there.
        address += size != 0 ? size : s_PageSize;
    }
    return true;
}

bool WriteAll(const File& file, const File& memory, std::vector<std::byte> notes,
              const std::vector<Segment>& segments) {
    std::vector<Elf64_Phdr> headers(1);
    const uint64_t notesAt = sizeof(Elf64_Ehdr) + (segments.size() + 1) * sizeof(Elf64_Phdr);
    headers[0].p_type = PT_NOTE;
    headers[0].p_offset = notesAt;
    headers[0].p_filesz = notes.size();
    headers[0].p_align = 4;
    uint64_t position = (notesAt + notes.size() + s_PageSize - 1) / s_PageSize * s_PageSize;
    for (const Segment& segment : segments) {
        headers.push_back(MakeProgramHeader(segment, position));
        if (segment.isTaken && !CopySegment(file, position, memory, segment.mapping))
            return false;
        position += headers.back().p_filesz;
    }
    const Elf64_Ehdr header = MakeHeader(headers.size());
    return file.Write(0, std::as_bytes(std::span(&header, 1))) &&
           file.Write(sizeof header, std::as_bytes(std::span(headers))) && file.Write(notesAt, notes) &&
           file.SetSize(position);
}

} // namespace

bool WriteCoreFile(const std::string& path, const CrashedProcess& crashed, const StoppedProcess& stopped,
                   uint64_t mostBytes) {
    const CrashRecord& record = crashed.GetRecord();
    if (stopped.GetThreads().empty())
        return false;
    const File memory("/proc/" + std::to_string(record.process) + "/mem", O_RDONLY);
    std::vector<Segment> segments = ListSegments(record.process);
    if (!memory.IsOpen() || segments.empty())
        return false;
    ChooseSegments(segments, record.registers.rsp, mostBytes);
    File file(path, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW);
    if (!file.IsOpen())
        return false;
    const bool written = WriteAll(file, memory, MakeCoreNotes(crashed, stopped), segments);
    if (file.Close() && written)
        return true;
    unlink(path.c_str());
    return false;
}
