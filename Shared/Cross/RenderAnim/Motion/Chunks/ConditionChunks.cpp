#include "Shared/Cross/RenderAnim/Motion/Chunks/ConditionChunks.h"

#include <memory>
#include <string>

#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/ChildChunks.h"

// "CLST", folder, version 1: "CLAS" for each clause.
//
// "CLAS", data, version 2, name of the clause:
//   int32    kind: 0 float, 1 bool, 2 string
//   string   variable
//   int32    comparison, 0 to 5
//   value    first: float, uint8 or string
//   value    second; not in version 1
//
// "CONL", folder, version 1: "COND" for each condition.
//
// "COND", data, version 1, name of the condition:
//   int32    clauses; for each:
//     string   name

namespace ra {

namespace {

constexpr uint32_t s_ClauseListVersion = 1;
constexpr uint32_t s_ClauseChunk = FourCC("CLAS");
constexpr uint32_t s_ClauseVersion = 2;
constexpr uint32_t s_OldestClauseVersion = 1;
constexpr uint32_t s_ConditionListVersion = 1;
constexpr uint32_t s_ConditionChunk = FourCC("COND");
constexpr uint32_t s_ConditionVersion = 1;

void WriteValue(PayloadWriter& writer, float value) { writer.Write(value); }
void WriteValue(PayloadWriter& writer, bool value) { writer.Write<uint8_t>(value ? 1 : 0); }
void WriteValue(PayloadWriter& writer, const std::string& value) { writer.WriteString(value.c_str()); }

void ReadValue(PayloadReader& reader, const char* pField, float& value) { value = reader.Read<float>(pField); }
void ReadValue(PayloadReader& reader, const char* pField, bool& value) { value = reader.Read<uint8_t>(pField) != 0; }
void ReadValue(PayloadReader& reader, const char* pField, std::string& value) { value = reader.ReadString(pField); }

template <class V>
void WriteValues(PayloadWriter& writer, const Clause& clause) {
    const auto& values = static_cast<const ValueClause<V>&>(clause);
    WriteValue(writer, values.GetFirstValue());
    WriteValue(writer, values.GetSecondValue());
}

template <class V>
void ReadValues(PayloadReader& reader, uint32_t version, Clause& clause) {
    auto& values = static_cast<ValueClause<V>&>(clause);
    V value;
    ReadValue(reader, "first value", value);
    values.SetFirstValue(value);
    if (version < 2)
        return;
    ReadValue(reader, "second value", value);
    values.SetSecondValue(value);
}

void WriteClause(Chunky& chunky, PayloadWriter& writer, const Clause& clause) {
    writer.Write(clause.GetType());
    writer.WriteString(clause.GetVariable().GetText());
    writer.Write(clause.GetComparison());
    switch (clause.GetType()) {
    case Clause::VARIABLE_FLOAT:
        WriteValues<float>(writer, clause);
        break;
    case Clause::VARIABLE_BOOL:
        WriteValues<bool>(writer, clause);
        break;
    case Clause::VARIABLE_STRING:
        WriteValues<std::string>(writer, clause);
        break;
    }
    writer.WriteChunk(chunky, s_ClauseChunk, s_ClauseVersion, clause.GetName().GetText());
}

// Null for a kind that isn't known.
std::unique_ptr<Clause> MakeClause(int32_t type, const Name& name) {
    switch (type) {
    case Clause::VARIABLE_FLOAT:
        return std::make_unique<ClauseFloat>(name);
    case Clause::VARIABLE_BOOL:
        return std::make_unique<ClauseBool>(name);
    case Clause::VARIABLE_STRING:
        return std::make_unique<ClauseString>(name);
    default:
        return nullptr;
    }
}

void ReadTest(PayloadReader& reader, Clause& clause) {
    const std::string variable = reader.ReadString("variable");
    const auto comparison = reader.Read<int32_t>("comparison");
    if (comparison < 0 || comparison >= Clause::ComparisonCount)
        reader.Fail("comparison", std::to_string(comparison) + " is none of 0 to 5");
    clause.SetTest(Name(variable.c_str()), static_cast<Clause::Comparison>(comparison));
}

std::unique_ptr<Clause> ReadClause(Chunky& chunky) {
    const ChunkInfo info = EnterData(chunky, s_ClauseChunk, s_OldestClauseVersion, s_ClauseVersion);
    PayloadReader reader(chunky, "clause", info.name.GetText());
    const auto type = reader.Read<int32_t>("kind");
    std::unique_ptr<Clause> pClause = MakeClause(type, Name(info.name.GetText()));
    if (!pClause)
        reader.Fail("kind", std::to_string(type) + " is none of 0 to 2");
    ReadTest(reader, *pClause);
    if (type == Clause::VARIABLE_FLOAT)
        ReadValues<float>(reader, info.version, *pClause);
    else if (type == Clause::VARIABLE_BOOL)
        ReadValues<bool>(reader, info.version, *pClause);
    else
        ReadValues<std::string>(reader, info.version, *pClause);
    chunky.EndChunk();
    return pClause;
}

void WriteCondition(Chunky& chunky, PayloadWriter& writer, const Condition& condition) {
    writer.Write(static_cast<uint32_t>(condition.m_clauses.size()));
    for (const Name& clause : condition.m_clauses)
        writer.WriteString(clause.GetText());
    writer.WriteChunk(chunky, s_ConditionChunk, s_ConditionVersion, condition.m_Name.GetText());
}

std::unique_ptr<Condition> ReadCondition(Chunky& chunky) {
    const ChunkInfo info = EnterData(chunky, s_ConditionChunk, s_ConditionVersion, s_ConditionVersion);
    PayloadReader reader(chunky, "condition", info.name.GetText());
    auto pCondition = std::make_unique<Condition>();
    pCondition->m_Name = Name(info.name.GetText());
    pCondition->m_clauses.resize(reader.ReadCount(s_NameMinBytes, "clause count"));
    for (Name& clause : pCondition->m_clauses)
        clause = Name(reader.ReadString("clause name").c_str());
    chunky.EndChunk();
    return pCondition;
}

} // namespace

void WriteClauses(Chunky& chunky, PayloadWriter& writer, const ClauseList& clauses) {
    WriteChildren(chunky, s_ClauseListChunk, s_ClauseListVersion, clauses,
                  [&](const Clause& clause) { WriteClause(chunky, writer, clause); });
}

void ReadClauses(Chunky& chunky, ClauseList& clauses) {
    ReadChildren(chunky, s_ClauseListChunk, s_ClauseListVersion, s_ClauseChunk,
                 [&] { clauses.Add(ReadClause(chunky)); });
}

void WriteConditions(Chunky& chunky, PayloadWriter& writer, const ConditionList& conditions) {
    WriteChildren(chunky, s_ConditionListChunk, s_ConditionListVersion, conditions,
                  [&](const Condition& condition) { WriteCondition(chunky, writer, condition); });
}

void ReadConditions(Chunky& chunky, ConditionList& conditions) {
    ReadChildren(chunky, s_ConditionListChunk, s_ConditionListVersion, s_ConditionChunk,
                 [&] { conditions.Add(ReadCondition(chunky)); });
}

} // namespace ra
