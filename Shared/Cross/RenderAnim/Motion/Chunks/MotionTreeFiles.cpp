#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionTreeFiles.h"

#include <memory>
#include <stdexcept>
#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/RenderAnim/Chunks/SaveFile.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/ActionTreeChunk.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/CheckReferences.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/ConditionChunks.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/EventChunk.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionTreeChunks.h"

// "ERML", folder, version 1, without a name: "EVCT", "MODL" and "MTRE".
// "ERTR", folder, version 1, without a name: "CLST", "CONL" and "ACTR".

namespace ra {

namespace {

// False, with the reason in the log, when the file can't be written.
template <class WriteContent>
bool SaveTree(const char* pPath, uint32_t id, WriteContent write) {
    return SaveFile(pPath, [&](ByteStream& stream) {
        Chunky chunky{ByteStreamAdapter(&stream)};
        PayloadWriter writer;
        chunky.BeginFolder(id, s_MotionTreeFileVersion);
        write(chunky, writer);
        chunky.EndChunk();
    });
}

// The same for reading. References are left to be looked at in their new model.
bool LoadTree(const char* pPath, uint32_t id, const MotionContext& context, MotionLists& parts) {
    try {
        const std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(pPath, ByteStream::Mode_Read);
        if (!pStream)
            throw Chunky::Exception(ChunkyError_OpenFailed, "Unable to open file!");
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        chunky.EnterFolder(id, s_MotionTreeFileVersion);
        const MotionContext loose = {.pModelName = context.pModelName, .hasAnimation = {}, .checksReferences = false};
        for (ChunkInfo child; chunky.NextChunk(child);)
            ReadMotionPart(chunky, child, parts.GetParts(), loose);
        chunky.EndChunk();
        return true;
    } catch (const std::exception& exception) {
        dbWarningf("RENDER ANIM -- %s: %s", pPath, exception.what());
        return false;
    }
}

// What the list hasn't under that name.
template <class List>
void AddMissing(List& list, List& source) {
    for (auto& pObject : source.Take())
        if (!list.Has(pObject->GetName()))
            list.Add(std::move(pObject));
}

} // namespace

bool ExportMotionList(const char* pPath, const ConstMotionParts& parts) {
    const bool saved = SaveTree(pPath, s_MotionListFileChunk, [&](Chunky& chunky, PayloadWriter& writer) {
        WriteEvents(chunky, writer, parts.events);
        WriteModifiers(chunky, writer, parts.modifiers);
        WriteMotions(chunky, writer, parts.motions);
    });
    if (!saved)
        dbWarningf("RENDER ANIM -- '%s': Unable to export motion list!", pPath);
    return saved;
}

bool ExportActionTree(const char* pPath, const ConstMotionParts& parts) {
    const bool saved = SaveTree(pPath, s_ActionTreeFileChunk, [&](Chunky& chunky, PayloadWriter& writer) {
        WriteClauses(chunky, writer, parts.clauses);
        WriteConditions(chunky, writer, parts.conditions);
        WriteActions(chunky, writer, parts.actions, MotionForm::Generic);
    });
    if (!saved)
        dbWarningf("RENDER ANIM -- '%s': Unable to export action tree!", pPath);
    return saved;
}

bool ImportMotionList(const char* pPath, const MotionParts& parts, const MotionContext& context) {
    MotionLists loose;
    if (!LoadTree(pPath, s_MotionListFileChunk, context, loose)) {
        dbWarningf("RENDER ANIM -- '%s': Unable to import motion list!", pPath);
        return false;
    }
    AddMissing(parts.events, loose.events);
    AddMissing(parts.modifiers, loose.modifiers);
    parts.motions = std::move(loose.motions);
    CheckMotions(parts, context, 0);
    CheckActions(parts, context, 0);
    return true;
}

bool ImportActionTree(const char* pPath, const MotionParts& parts, const MotionContext& context) {
    MotionLists loose;
    if (!LoadTree(pPath, s_ActionTreeFileChunk, context, loose)) {
        dbWarningf("RENDER ANIM -- '%s': Unable to import action tree!", pPath);
        return false;
    }
    AddMissing(parts.clauses, loose.clauses);
    const uint32_t conditionCount = parts.conditions.GetCount();
    AddMissing(parts.conditions, loose.conditions);
    parts.actions = std::move(loose.actions);
    CheckConditions(parts, context, conditionCount);
    CheckActions(parts, context, 0);
    return true;
}

} // namespace ra
