#pragma once

#include <cstdint>
#include <functional>

#include "Shared/Cross/Util/Dictionary.h"

namespace ra {

// The name of a bone, a mesh, a marker or an animation: interned, and as cheap to copy and compare as a number. It
// keeps its spelling, and two spellings are two names. Good for the life of the process; one thread makes names.
class Name {
public:
    // Stands for none; a default Name equals it.
    static const Name INVALID;

    constexpr Name() = default;
    // Null gives INVALID.
    explicit Name(const char* pText);

    // False when nothing of that name was ever made; `out` is then left alone.
    static bool Find(const char* pText, Name& out);
    // The text of a value that a name had; null for INVALID's.
    static const char* GetText(uint32_t value);

    // Null for INVALID.
    const char* GetText() const { return IsValid() ? m_Key.GetText() : nullptr; }
    // Empty for INVALID, as files and messages have it.
    const char* GetTextOrEmpty() const { return IsValid() ? m_Key.GetText() : ""; }
    bool IsValid() const { return m_Key.IsValid(); }
    uint32_t GetValue() const { return m_Key.GetValue(); }

    friend bool operator==(const Name& left, const Name& right) { return left.m_Key == right.m_Key; }

private:
    Dictionary::Key m_Key;
};

} // namespace ra

template <>
struct std::hash<ra::Name> {
    size_t operator()(const ra::Name& name) const noexcept { return name.GetValue(); }
};
