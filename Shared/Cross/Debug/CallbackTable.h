#pragma once

#include "Shared/Cross/Debug/db.h"

#include <algorithm>
#include <array>
#include <cstdint>

// A function with what it is given.
struct dbCallback {
    void (*pFunction)(void* pUser) = nullptr;
    void* pUser = nullptr;

    explicit operator bool() const { return pFunction; }
    bool operator==(const dbCallback&) const = default;
};

// What is to be called, in the order it was added in. Nothing is allocated, so a crash may use it.
template <class Entry, uint32_t Most>
class CallbackTable {
public:
    // A null one, one that is there already, and one too many are mistakes, and not added.
    void Add(const Entry& entry) {
        if (!entry)
            dbStop("a null callback");
        else if (std::find(begin(), end(), entry) != end())
            dbStop("a callback registered twice");
        else if (m_Count == Most)
            dbStop("too many callbacks");
        else
            m_Entries[m_Count++] = entry;
    }
    void Remove(const Entry& entry) {
        m_Count = static_cast<uint32_t>(std::remove(m_Entries.begin(), m_Entries.begin() + m_Count, entry) -
                                        m_Entries.begin());
    }

    uint32_t GetCount() const { return m_Count; }
    const Entry& operator[](uint32_t index) const { return m_Entries[index]; }
    auto begin() const { return m_Entries.begin(); }
    auto end() const { return m_Entries.begin() + m_Count; }

private:
    std::array<Entry, Most> m_Entries = {};
    uint32_t m_Count = 0;
};
