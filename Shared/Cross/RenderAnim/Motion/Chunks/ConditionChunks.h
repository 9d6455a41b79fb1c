#pragma once

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Motion/Clause.h"
#include "Shared/Cross/RenderAnim/Motion/Condition.h"

namespace ra {

constexpr uint32_t s_ClauseListChunk = FourCC("CLST");
constexpr uint32_t s_ConditionListChunk = FourCC("CONL");

void WriteClauses(Chunky& chunky, PayloadWriter& writer, const ClauseList& clauses);
// The next chunk is a "CLST".
void ReadClauses(Chunky& chunky, ClauseList& clauses);

void WriteConditions(Chunky& chunky, PayloadWriter& writer, const ConditionList& conditions);
// The next chunk is a "CONL".
void ReadConditions(Chunky& chunky, ConditionList& conditions);

} // namespace ra
