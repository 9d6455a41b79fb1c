#pragma once

#include "Shared/PC/Debug/CrashRecord.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

// A piece of the crashed process's address space.
struct Mapping {
    uint64_t start = 0;
    uint64_t end = 0;
    uint64_t offset = 0; // in the file
    bool isReadable = false;
    bool isWritable = false;
    bool isExecutable = false;
    bool isShared = false;
    std::string path; // in brackets what is no file; empty for plain memory
};

// The lines that the system words its list of mappings with; others are left out.
std::vector<Mapping> ParseMappings(const std::string& text);

// What a crashed process has sent: all that a report on it needs, should the system not let us look into it.
class CrashedProcess {
public:
    CrashedProcess(const CrashRecord& record, std::string maps);

    // Reads until the other end has sent all. Nothing when it is no process of this build.
    static std::optional<CrashedProcess> Receive(int descriptor);

    void AddStack(uint64_t address, std::span<const std::byte> bytes);

    const CrashRecord& GetRecord() const { return m_Record; }
    const std::string& GetMaps() const { return m_Maps; }
    const std::vector<Mapping>& GetMappings() const { return m_Mappings; }
    // By address. Null when nothing is mapped there.
    const Mapping* FindMapping(uint64_t address) const;
    // Of the stack alone. False for what wasn't sent.
    bool ReadWord(uint64_t address, uint64_t& word) const;

    // The name of the file that the address lies in, without its folder; "Unknown" outside of files.
    std::string GetModuleName(uint64_t address) const;
    std::string GetExecutableName() const;

private:
    CrashRecord m_Record;
    std::string m_Maps;
    std::vector<Mapping> m_Mappings;
    std::map<uint64_t, std::vector<std::byte>> m_Stack; // by the address of the first byte
};
