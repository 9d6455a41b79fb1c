#include "Shared/Cross/RevControlAPI/Patterns/PatternMatcher.h"

#include <boost/regex.hpp>

#include <algorithm>
#include <stdexcept>

extern "C" bool PvxMatchPattern(const char* pPattern, const char* pText, char* pGroup, size_t room) {
    try {
        boost::cmatch match;
        if (room == 0 || !boost::regex_match(pText, match, boost::regex(pPattern)))
            return false;
        const size_t size = std::min(static_cast<size_t>(match[1].length()), room - 1);
        std::copy_n(match[1].first, size, pGroup);
        pGroup[size] = 0;
        return true;
    } catch (const std::exception&) {
        // A text that would take the library too long; to the caller it is one that doesn't match.
        return false;
    }
}
