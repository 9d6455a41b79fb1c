#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

// A text of at most `Capacity` characters that lies inside its owner. What doesn't fit is cut off; who minds asks the
// result.
template <size_t Capacity>
class FixedString {
public:
    // False when the text was cut.
    bool Assign(std::string_view text) {
        const size_t taken = std::min(text.size(), Capacity);
        text.copy(m_Text, taken);
        m_Text[taken] = '\0';
        return taken == text.size();
    }
    const char* GetText() const { return m_Text; }

private:
    char m_Text[Capacity + 1] = {};
};
