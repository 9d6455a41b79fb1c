#pragma once

#include "Shared/Cross/Debug/db.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

// Interns strings: each distinct one is stored once and gets a 32-bit value, so that comparing names is comparing
// integers. The value of a string is its hash, or the next free number after it when another string came first: good
// for comparing within a run, and nothing to put into a file. Not locked.
class Dictionary {
public:
    // A name, as cheap as three words. It is good as long as its dictionary.
    class Key {
    public:
        static constexpr uint32_t InvalidValue = 1;

        // No name; equal to every other fresh key.
        constexpr Key() = default;

        // Never null. "<uninitialized>" in a fresh key.
        const char* GetText() const { return m_pText; }
        uint32_t GetValue() const { return m_value; }
        const Dictionary* GetDictionary() const { return m_pDictionary; }
        bool IsValid() const { return m_value != InvalidValue; }

        // By value alone; keys of two dictionaries don't compare.
        friend bool operator==(const Key& left, const Key& right) {
            AssertComparable(left, right);
            return left.m_value == right.m_value;
        }
        // An order for look-ups. It isn't the texts' order, and it isn't one to write files in.
        friend std::strong_ordering operator<=>(const Key& left, const Key& right) {
            AssertComparable(left, right);
            return left.m_value <=> right.m_value;
        }

    private:
        friend class Dictionary;

        Key(const char* pText, const Dictionary* pDictionary, uint32_t value)
            : m_pText(pText), m_pDictionary(pDictionary), m_value(value) {}
        static void AssertComparable(const Key& left, const Key& right) {
            dbAssertText(!left.m_pDictionary || !right.m_pDictionary || left.m_pDictionary == right.m_pDictionary,
                         "(m_pDictionary == NULL) || (rhs.m_pDictionary == NULL) || "
                         "(m_pDictionary == rhs.m_pDictionary)");
        }

        const char* m_pText = s_Uninitialized;
        const Dictionary* m_pDictionary = nullptr;
        uint32_t m_value = InvalidValue;
    };

    // Without case sensitivity strings are lower-cased and cut at 1023 characters.
    explicit Dictionary(bool caseSensitive);
    ~Dictionary();
    Dictionary(const Dictionary&) = delete;
    Dictionary& operator=(const Dictionary&) = delete;

    // Finds or adds. `pText` must not be null; past the assertion that gives a fresh key.
    void Intern(Key& out, const char* pText);
    // False when it isn't there, with `out` untouched; never adds.
    bool Find(const char* pText, Key& out) const;
    // The key of a value that a key of this dictionary had; false for any other, with `out` untouched.
    bool FindValue(uint32_t value, Key& out) const;
    // The stored text. An unknown value is an assertion and yields an empty string.
    const char* GetString(uint32_t value) const;

    size_t GetCount() const { return m_Count; }

private:
    static constexpr char s_Uninitialized[] = "<uninitialized>";

    struct Entry {
        uint32_t value = 0;
        uint32_t length = 0;
        const char* pText = nullptr; // null in a free slot
    };
    struct BlockDelete {
        void operator()(char* pBlock) const;
    };
    // The text as it is stored: lower-cased and cut in `buffer` when that applies.
    std::string_view Normalise(const char* pText, char* pBuffer) const;
    // The entry of a value, or the free slot where it belongs.
    size_t FindSlot(uint32_t value) const;
    const char* Store(std::string_view text);
    void Grow();
    void ReportCollision(const char* pStored, const char* pText);

    bool m_caseSensitive;
    bool m_collisionReported = false;
    size_t m_Count = 0;
    // Open addressing by the value's low bits, with a power of two of slots, at most half of them taken.
    std::vector<Entry> m_Entries;
    // The strings, one behind the other; a stored string never moves.
    std::vector<std::unique_ptr<char[], BlockDelete>> m_Blocks;
    size_t m_BlockRoom = 0;
    char* m_pBlockNext = nullptr;
};

template <>
struct std::hash<Dictionary::Key> {
    size_t operator()(const Dictionary::Key& key) const noexcept { return key.GetValue(); }
};
