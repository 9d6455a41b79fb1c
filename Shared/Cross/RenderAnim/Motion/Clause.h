#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "Shared/Cross/RenderAnim/Motion/NamedList.h"
#include "Shared/Cross/RenderAnim/RenderAnimName.h"

namespace ra {

// A test of one of the model's variables, which has a kind of its own.
class Clause {
public:
    // The numbers are in files.
    enum Type : int32_t { VARIABLE_FLOAT = 0, VARIABLE_BOOL = 1, VARIABLE_STRING = 2 };
    enum Comparison : int32_t { Equal = 0, NotEqual = 1, Less = 2, LessOrEqual = 3, Greater = 4, GreaterOrEqual = 5 };
    static constexpr int32_t ComparisonCount = 6;

    virtual ~Clause() = default;
    Clause(const Clause&) = delete;
    Clause& operator=(const Clause&) = delete;

    virtual Type GetType() const = 0;
    const Name& GetName() const { return m_Name; }
    const Name& GetVariable() const { return m_Variable; }
    Comparison GetComparison() const { return m_Comparison; }
    void SetTest(const Name& variable, Comparison comparison);

    // For people: the variable, the comparison and the first value.
    std::string Print() const;

protected:
    explicit Clause(const Name& name) : m_Name(name) {}

private:
    virtual std::string PrintValue() const = 0;

    Name m_Name;
    Name m_Variable;
    Comparison m_Comparison = Equal;
};

// What a variable is compared with. The second value is carried for the game.
template <class V>
class ValueClause : public Clause {
public:
    const V& GetFirstValue() const { return m_First; }
    const V& GetSecondValue() const { return m_Second; }
    void SetFirstValue(V value) { m_First = std::move(value); }
    void SetSecondValue(V value) { m_Second = std::move(value); }

protected:
    using Clause::Clause;

private:
    V m_First = V();
    V m_Second = V();
};

class ClauseFloat final : public ValueClause<float> {
public:
    explicit ClauseFloat(const Name& name) : ValueClause(name) {}
    Type GetType() const override { return VARIABLE_FLOAT; }

private:
    std::string PrintValue() const override;
};

class ClauseBool final : public ValueClause<bool> {
public:
    explicit ClauseBool(const Name& name) : ValueClause(name) {}
    Type GetType() const override { return VARIABLE_BOOL; }

private:
    std::string PrintValue() const override { return GetFirstValue() ? "true" : "false"; }
};

class ClauseString final : public ValueClause<std::string> {
public:
    explicit ClauseString(const Name& name) : ValueClause(name) {}
    Type GetType() const override { return VARIABLE_STRING; }

private:
    std::string PrintValue() const override { return '"' + GetFirstValue() + '"'; }
};

using ClauseList = NamedList<Clause>;

} // namespace ra
