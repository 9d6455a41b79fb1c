#pragma once

#include "Shared/Cross/Debug/Message.h"

#include <algorithm>
#include <array>
#include <cstdint>

// Callbacks in the order they were added in, each with what it is given. Nothing is allocated, so a crash may use it.
template <uint32_t Most>
class CallbackTable {
public:
    using Function = void (*)(void* pUser);

    struct Entry {
        Function pFunction = nullptr;
        void* pUser = nullptr;

        bool operator==(const Entry&) const = default;
    };

    // A null one, one that is there already, and one too many are mistakes, and not added.
    void Add(const Entry& entry) {
        if (!entry.pFunction)
            dbStop("a null callback");
        else if (std::find(m_Entries.begin(), End(), entry) != End())
            dbStop("a callback registered twice");
        else if (m_Count == Most)
            dbStop("too many callbacks");
        else
            m_Entries[m_Count++] = entry;
    }

    void Remove(const Entry& entry) {
        m_Count = static_cast<uint32_t>(std::remove(m_Entries.begin(), End(), entry) - m_Entries.begin());
    }

    uint32_t GetCount() const { return m_Count; }
    const Entry& operator[](uint32_t index) const { return m_Entries[index]; }

private:
    auto End() { return m_Entries.begin() + m_Count; }

    std::array<Entry, Most> m_Entries = {};
    uint32_t m_Count = 0;
};
