#pragma once

#include <memory>
#include <string>

// A regular expression that whole file names are matched with, without regard to case. Expressions come from scripts
// and from other processes: one that isn't any, and one that is endless work, throws std::runtime_error.
class NameMatcher {
public:
    explicit NameMatcher(const std::string& expression);
    ~NameMatcher();
    NameMatcher(NameMatcher&& other) noexcept;
    NameMatcher& operator=(NameMatcher&& other) noexcept;

    bool Matches(const std::string& name) const;

private:
    struct Expression;
    std::unique_ptr<Expression> m_pExpression;
};
