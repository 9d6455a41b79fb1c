#pragma once

#include <memory>

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/RenderAnim/Chunks/PayloadWriter.h"
#include "Shared/Cross/RenderAnim/Motion/Event.h"

namespace ra {

constexpr uint32_t s_EventListChunk = FourCC("EVCT");
constexpr uint32_t s_EventChunk = FourCC("EVNT");
constexpr uint32_t s_EventVersion = 3;

void WriteEvent(Chunky& chunky, PayloadWriter& writer, const Event& event);
// The next chunk is an "EVNT".
std::unique_ptr<Event> ReadEvent(Chunky& chunky);

void WriteEvents(Chunky& chunky, PayloadWriter& writer, const EventList& events);
// The next chunk is an "EVCT".
void ReadEvents(Chunky& chunky, EventList& events);

} // namespace ra
