#include "Shared_Tools/BurnerImp/NameMatcher.h"

#include <stdexcept>

#include <boost/regex.hpp>

struct NameMatcher::Expression {
    std::string text;
    boost::regex regex;
};

NameMatcher::NameMatcher(const std::string& expression) try
    : m_pExpression(new Expression{expression, boost::regex(expression, boost::regex::perl | boost::regex::icase)}) {
} catch (const boost::regex_error& error) {
    throw std::runtime_error("'" + expression + "' is no regular expression: " + error.what());
}

NameMatcher::~NameMatcher() = default;
NameMatcher::NameMatcher(NameMatcher&& other) noexcept = default;
NameMatcher& NameMatcher::operator=(NameMatcher&& other) noexcept = default;

bool NameMatcher::Matches(const std::string& name) const {
    try {
        return boost::regex_match(name, m_pExpression->regex);
    } catch (const std::runtime_error&) {
        throw std::runtime_error("'" + m_pExpression->text + "' is too much work to match '" + name + "' with");
    }
}
