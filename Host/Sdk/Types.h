#pragma once

#include <cstdint>
#include <limits>

// The small value types that every operation of the host is told in.

// A point in time in ticks; how many make a frame is GetTicksPerFrame's to say.
using TimeValue = int32_t;

// The family that a class of the host belongs to.
using SClass_ID = uint32_t;

// The exact class of an object, modifier, material or controller.
class Class_ID {
public:
    constexpr Class_ID() = default;
    constexpr Class_ID(uint32_t partA, uint32_t partB) : m_PartA(partA), m_PartB(partB) {}

    constexpr uint32_t PartA() const { return m_PartA; }
    constexpr uint32_t PartB() const { return m_PartB; }

    friend constexpr bool operator==(const Class_ID&, const Class_ID&) = default;

private:
    uint32_t m_PartA = 0;
    uint32_t m_PartB = 0;
};

// A span of time; both ends belong to it.
class Interval {
public:
    // The full interval.
    constexpr Interval() = default;
    constexpr Interval(TimeValue start, TimeValue end) : m_Start(start), m_End(end) {}

    constexpr TimeValue Start() const { return m_Start; }
    constexpr TimeValue End() const { return m_End; }

    friend constexpr bool operator==(const Interval&, const Interval&) = default;

private:
    TimeValue m_Start = std::numeric_limits<TimeValue>::min();
    TimeValue m_End = std::numeric_limits<TimeValue>::max();
};

inline constexpr Interval FOREVER;

// A window of the host: its main window or a dialog.
class Window;
using HWND = Window*;

// A loaded module. The host alone knows what stands behind it; it serves as the key of the module's resources.
struct ModuleHandle;
using HINSTANCE = ModuleHandle*;

// A colour packed into a word, red in the low byte.
using COLORREF = uint32_t;
