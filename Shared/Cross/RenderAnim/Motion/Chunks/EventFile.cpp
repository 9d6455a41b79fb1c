#include "Shared/Cross/RenderAnim/Motion/Chunks/EventFile.h"

#include <memory>
#include <string>
#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/EventChunk.h"

namespace ra {

namespace {

constexpr char s_EventFolder[] = "art/events/";
constexpr char s_Extension[] = "events";

std::string MakeRelativePath(const char* pName) {
    std::string path = NormaliseEventName(pName);
    if (path.find('/') == std::string::npos)
        path.insert(0, s_EventFolder);
    if (!FilePathUtil::HasExtension(path.c_str(), s_Extension))
        path.append(1, '.').append(s_Extension);
    return path;
}

// Null without such a file.
std::unique_ptr<ByteStream> OpenEventFile(const char* pName) {
    const std::string path = MakeRelativePath(pName);
    // Longer ones are no paths, and no mistake of ours either.
    if (path.size() + sizeof("GENERIC:") >= FilePath::MAXPATH)
        return nullptr;
    std::unique_ptr<ByteStream> pStream;
    if (IsGenericLoad())
        pStream = FilePath::OpenStream(("GENERIC:" + path).c_str(), ByteStream::Mode_Read);
    if (!pStream)
        pStream = FilePath::OpenStream(("DATA:" + path).c_str(), ByteStream::Mode_Read);
    return pStream;
}

} // namespace

bool LoadEvent(const Name& name, EventList& events, const char* pModelName) {
    const std::unique_ptr<ByteStream> pStream = OpenEventFile(name.GetTextOrEmpty());
    if (!pStream)
        return false;
    try {
        Chunky chunky{ByteStreamAdapter(pStream.get())};
        std::unique_ptr<Event> pEvent = ReadEvent(chunky);
        pEvent->m_Name = name;
        events.Add(std::move(pEvent));
        return true;
    } catch (const std::exception& exception) {
        dbWarningf("EVENTS -- '%s': Unable to load event '%s'!", pModelName, name.GetTextOrEmpty());
        dbWarningf("EVENTS -- '%s': %s", name.GetTextOrEmpty(), exception.what());
        return false;
    }
}

bool SaveEvent(const char* pPath, const Event& event) {
    try {
        if (const std::unique_ptr<FileReplacement> pFile = FilePath::ReplaceFile(pPath)) {
            Chunky chunky{ByteStreamAdapter(&pFile->GetStream())};
            PayloadWriter writer;
            WriteEvent(chunky, writer, event);
            if (pFile->Finish())
                return true;
        }
    } catch (const std::exception& exception) {
        dbWarningf("EVENTS -- '%s': %s", pPath, exception.what());
    }
    dbWarningf("EVENTS -- '%s': Unable to save!", pPath);
    return false;
}

} // namespace ra
