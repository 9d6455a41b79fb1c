#pragma once

#include <string>
#include <string_view>

// In upper case, as aliases and roots are kept. A to Z only, since no table of a character set is certain.
char FoldCase(char character);
std::string FoldCase(std::string_view text);
// An order that is the same on every machine: by folded characters, then by the characters as they are.
bool IsBeforeNoCase(std::string_view left, std::string_view right);

bool HasWildcard(std::string_view text);
// * stands for any number of characters and ? for one; *.* matches a name without a dot too. Takes at most the product
// of both lengths.
bool MatchesWildcard(std::string_view pattern, std::string_view name);
