#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

// A text of at most `Capacity` characters that lies inside its owner. What doesn't fit is cut off; who minds asks the
// result.
template <size_t Capacity>
class FixedString {
public:
    FixedString() = default;
    explicit FixedString(std::string_view text) { Assign(text); }

    // False when the text was cut.
    bool Assign(std::string_view text) {
        m_Length = 0;
        return Append(text);
    }
    bool Append(std::string_view text) {
        const size_t taken = std::min(text.size(), Capacity - m_Length);
        std::copy_n(text.data(), taken, m_Text + m_Length);
        m_Length += taken;
        m_Text[m_Length] = '\0';
        return taken == text.size();
    }
    void Clear() { Assign({}); }

    static constexpr size_t GetCapacity() { return Capacity; }
    const char* GetText() const { return m_Text; }
    std::string_view GetView() const { return {m_Text, m_Length}; }
    size_t GetLength() const { return m_Length; }
    bool IsEmpty() const { return m_Length == 0; }

    friend bool operator==(const FixedString& left, std::string_view right) { return left.GetView() == right; }
    friend bool operator==(const FixedString& left, const FixedString& right) {
        return left.GetView() == right.GetView();
    }

private:
    size_t m_Length = 0;
    char m_Text[Capacity + 1] = {};
};
