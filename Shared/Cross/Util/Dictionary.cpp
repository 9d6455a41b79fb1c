#include "Shared/Cross/Util/Dictionary.h"

#include "Shared/Cross/Memory/MMAllocator.h"
#include "Shared/Cross/Util/Hash.h"

#include <algorithm>
#include <cstring>

namespace {

using StringsPool = MMNamedPool<"DictionaryStrings">;

constexpr size_t s_MaxNoCaseNameLength = 1023;
constexpr size_t s_FirstSlots = 64;
// Big enough that the heap hardly notices thousands of names, small enough for a dictionary of ten.
constexpr size_t s_TextBlockSize = size_t{16} * 1024;

} // namespace

void Dictionary::BlockDelete::operator()(char* pBlock) const { MMFree(StringsPool::Get(), pBlock); }

Dictionary::Dictionary(bool caseSensitive) : m_caseSensitive(caseSensitive) {}

Dictionary::~Dictionary() = default;

void Dictionary::Intern(Key& out, const char* pText) {
    out = Key();
    dbAssertText(pText, "str");
    if (!pText)
        return;
    char buffer[s_MaxNoCaseNameLength];
    const std::string_view text = Normalise(pText, buffer);
    if (m_Count * 2 >= m_Entries.size())
        Grow();

    uint32_t value = Hash(text);
    dbAssertText(value != 0, "key.m_value != 0");
    for (;; ++value) {
        Entry& entry = m_Entries[FindSlot(value)];
        if (!entry.pText) {
            entry = {value, static_cast<uint32_t>(text.size()), Store(text)};
            ++m_Count;
        }
        if (std::string_view(entry.pText, entry.length) == text) {
            out = Key(entry.pText, this, value);
            return;
        }
        ReportCollision(entry.pText, pText);
    }
}

bool Dictionary::Find(const char* pText, Key& out) const {
    dbAssertText(pText, "str");
    if (!pText || m_Entries.empty())
        return false;
    char buffer[s_MaxNoCaseNameLength];
    const std::string_view text = Normalise(pText, buffer);
    for (uint32_t value = Hash(text);; ++value) {
        const Entry& entry = m_Entries[FindSlot(value)];
        if (!entry.pText)
            return false;
        if (std::string_view(entry.pText, entry.length) == text) {
            out = Key(entry.pText, this, value);
            return true;
        }
    }
}

bool Dictionary::FindValue(uint32_t value, Key& out) const {
    if (m_Entries.empty())
        return false;
    const Entry& entry = m_Entries[FindSlot(value)];
    if (!entry.pText)
        return false;
    out = Key(entry.pText, this, value);
    return true;
}

const char* Dictionary::GetString(uint32_t value) const {
    Key key;
    if (FindValue(value, key))
        return key.GetText();
    dbBreak();
    return "";
}

std::string_view Dictionary::Normalise(const char* pText, char* pBuffer) const {
    if (m_caseSensitive)
        return pText;
    const size_t length = strnlen(pText, s_MaxNoCaseNameLength);
    std::transform(pText, pText + length, pBuffer, ToLower);
    return {pBuffer, length};
}

size_t Dictionary::FindSlot(uint32_t value) const {
    const size_t mask = m_Entries.size() - 1;
    size_t slot = value & mask;
    while (m_Entries[slot].pText && m_Entries[slot].value != value)
        slot = (slot + 1) & mask;
    return slot;
}

const char* Dictionary::Store(std::string_view text) {
    const size_t size = text.size() + 1;
    if (size > m_BlockRoom) {
        m_BlockRoom = std::max(size, s_TextBlockSize);
        m_pBlockNext = m_Blocks.emplace_back(static_cast<char*>(MMAlloc(StringsPool::Get(), m_BlockRoom))).get();
    }
    char* pStored = m_pBlockNext;
    text.copy(pStored, text.size());
    pStored[text.size()] = '\0';
    m_pBlockNext += size;
    m_BlockRoom -= size;
    return pStored;
}

void Dictionary::Grow() {
    std::vector<Entry> old(std::max(s_FirstSlots, m_Entries.size() * 2));
    old.swap(m_Entries);
    for (const Entry& entry : old)
        if (entry.pText)
            m_Entries[FindSlot(entry.value)] = entry;
}

void Dictionary::ReportCollision(const char* pStored, const char* pText) {
    if (m_collisionReported)
        return;
    m_collisionReported = true;
    dbWarningf("Dictionary hash collision '%s'<->'%s'", pStored, pText);
}
