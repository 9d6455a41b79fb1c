#include "Host/Gltf/Messages.h"

#include <algorithm>

namespace gltf {

void Messages::Warn(const Place& place, std::string_view what, std::string_view advice) const {
    if (!m_Sink)
        return;
    std::string text = place.GetText();
    if (!text.empty())
        text += ": ";
    m_Sink(GetLine(text.append(what).append("; ").append(advice)));
}

void Messages::Warn(const Fault& fault) const {
    if (m_Sink)
        m_Sink(GetLine(fault.what()));
}

void ReadMembers(const Messages& messages, const Place& place, std::string_view path, const Json& object,
                 std::initializer_list<MemberReader> readers) {
    if (!object.IsObject()) {
        messages.Warn(place, std::string(path) + " has the wrong type", "give an object");
        return;
    }
    for (const auto& member : object.GetObject()) {
        const std::string_view name = ToString(member.name).value_or("");
        const auto reader = std::ranges::find(readers, name, &MemberReader::name);
        const std::string shown = Quoted(std::string(path) + '.' + std::string(name));
        if (reader == readers.end())
            messages.Warn(place, "the member " + shown + " is unknown", "check its spelling");
        else if (!reader->read(member.value))
            messages.Warn(place, "the member " + shown + " has the wrong type", "give " + std::string(reader->wanted));
    }
}

const Json* FindHostExtras(const Json& object) {
    const Json* pExtras = FindMember(object, "extras");
    return pExtras ? FindMember(*pExtras, "host") : nullptr;
}

} // namespace gltf
