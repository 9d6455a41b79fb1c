#include "Shared/Cross/RenderAnim/Motion/Chunks/EventChunk.h"

#include "Shared/Cross/RenderAnim/Chunks/PayloadReader.h"
#include "Shared/Cross/RenderAnim/Motion/Chunks/ChildChunks.h"

// "EVCT", folder, version 1: "EVNT" for each event.
//
// "EVNT", data, version 3, name of the event:
//   int32    parameters; for each:
//     string   name
//     string   value

namespace ra {

namespace {

constexpr uint32_t s_EventListVersion = 1;
constexpr size_t s_ParameterMinBytes = 8; // two empty strings

} // namespace

void WriteEvent(Chunky& chunky, PayloadWriter& writer, const Event& event) {
    writer.Write(static_cast<uint32_t>(event.m_parameters.size()));
    for (const Event::Parameter& parameter : event.m_parameters) {
        writer.WriteString(parameter.name.c_str());
        writer.WriteString(parameter.value.c_str());
    }
    writer.WriteChunk(chunky, s_EventChunk, s_EventVersion, event.m_Name.GetText());
}

std::unique_ptr<Event> ReadEvent(Chunky& chunky) {
    const ChunkInfo info = EnterData(chunky, s_EventChunk, s_EventVersion, s_EventVersion);
    PayloadReader reader(chunky, "event", info.name.GetText());
    auto pEvent = std::make_unique<Event>();
    pEvent->m_Name = Name(NormaliseEventName(info.name.GetText()).c_str());
    pEvent->m_parameters.resize(reader.ReadCount(s_ParameterMinBytes, "parameter count"));
    for (Event::Parameter& parameter : pEvent->m_parameters) {
        parameter.name = reader.ReadString("parameter name");
        parameter.value = reader.ReadString("parameter value");
    }
    chunky.EndChunk();
    return pEvent;
}

void WriteEvents(Chunky& chunky, PayloadWriter& writer, const EventList& events) {
    WriteChildren(chunky, s_EventListChunk, s_EventListVersion, events,
                  [&](const Event& event) { WriteEvent(chunky, writer, event); });
}

void ReadEvents(Chunky& chunky, EventList& events) {
    ReadChildren(chunky, s_EventListChunk, s_EventListVersion, s_EventChunk, [&] { events.Add(ReadEvent(chunky)); });
}

} // namespace ra
