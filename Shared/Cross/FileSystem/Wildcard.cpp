#include "Shared/Cross/FileSystem/Wildcard.h"

#include <algorithm>

char FoldCase(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

std::string FoldCase(std::string_view text) {
    std::string folded(text);
    for (char& character : folded)
        character = FoldCase(character);
    return folded;
}

bool IsBeforeNoCase(std::string_view left, std::string_view right) {
    const size_t common = std::min(left.size(), right.size());
    for (size_t i = 0; i < common; ++i) {
        const auto a = static_cast<unsigned char>(FoldCase(left[i]));
        const auto b = static_cast<unsigned char>(FoldCase(right[i]));
        if (a != b)
            return a < b;
    }
    return left.size() != right.size() ? left.size() < right.size() : left < right;
}

bool HasWildcard(std::string_view text) { return text.find_first_of("*?") != std::string_view::npos; }

bool MatchesWildcard(std::string_view pattern, std::string_view name) {
    if (pattern == "*.*")
        return true;
    size_t p = 0;
    size_t n = 0;
    // Where to go back to: behind the last star, and what it has swallowed so far.
    size_t behindStar = std::string_view::npos;
    size_t swallowed = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            behindStar = ++p;
            swallowed = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || FoldCase(pattern[p]) == FoldCase(name[n]))) {
            ++p;
            ++n;
        } else if (behindStar != std::string_view::npos) {
            p = behindStar;
            n = ++swallowed;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}
