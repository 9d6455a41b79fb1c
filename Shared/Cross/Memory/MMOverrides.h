#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

enum class MMOverride : uint32_t { None, OverWrite, UnderWrite, Info };

// What "memory.ini" says of the pools: lines `name=command` of its section "overrides". Names, the section and commands
// go without regard to case. Holds all it needs in itself, since it is filled before there is any pool.
//
//     EXCLUDE    the pool stays as it was asked for, whatever ALL says
//     VMOVER     the pool guards the end of its blocks
//     VMUNDER    the pool guards the start of its blocks
//     INFO       the pool records its blocks
//
// The name ALL stands for every pool without a line of its own. Lines with ";" ahead of "=" are skipped. A name's first
// line counts.
class MMOverrides {
public:
    static constexpr size_t MaxSection = 8192; // bytes; what comes behind is left out
    static constexpr size_t MaxLines = 64;     // of overrides, and as many of exclusions

    // Takes the place of what was read before. Lines that can't be told are reported and skipped.
    void Read(std::string_view file);
    MMOverride Get(std::string_view pool) const;

private:
    struct Line {
        std::string_view name; // in the section
        MMOverride command;
    };
    // One more than there is room for is dropped.
    class LineList {
    public:
        void Add(const Line& line);
        const Line* Find(std::string_view name) const;
        void Clear() { m_Count = 0; }

    private:
        std::array<Line, MaxLines> m_Lines = {};
        size_t m_Count = 0;
    };

    void CopySection(std::string_view file);
    void ReadLine(std::string_view line);

    std::array<char, MaxSection> m_Section = {};
    size_t m_Length = 0;
    LineList m_Overrides;
    LineList m_Exclusions;
};
