#include "Host/App/Progress.h"

#include "Host/Sdk/Core.h"

#include <algorithm>

namespace {

// Short exports shall not flicker, and the terminal shall not cost more than the work.
constexpr std::chrono::milliseconds s_Pause(100);

int Percent(size_t done, size_t total) { return total ? static_cast<int>(std::min(done, total) * 100 / total) : 100; }

} // namespace

void Progress::SetStage(const std::string& stage) {
    if (IsDue())
        Show(stage);
}

void Progress::SetTotals(size_t meshes, Interval range) {
    m_MeshTotal = meshes;
    m_Range = range;
}

void Progress::OnMesh(const scene::Node& node) {
    ++m_MeshCount;
    if (!IsDue())
        return;
    Show("meshes: " + std::to_string(m_MeshCount) + " of " + std::to_string(m_MeshTotal) + " (" +
         std::to_string(Percent(m_MeshCount - 1, m_MeshTotal)) + " %), " + node.GetName());
}

void Progress::OnTick(TimeValue t) {
    if (!IsDue() || m_Range.End() <= m_Range.Start())
        return;
    // A pass over the frames comes back to the first one: the share is that of the pass.
    const int ticks = GetTicksPerFrame();
    const int64_t length = int64_t{m_Range.End()} - m_Range.Start();
    const int64_t at = std::clamp<int64_t>(int64_t{t} - m_Range.Start(), 0, length);
    Show("animation: frame " + std::to_string(at / ticks) + " of " + std::to_string(length / ticks) + " (" +
         std::to_string(at * 100 / length) + " %)");
}

void Progress::Clear() {
    if (!m_Shown)
        return;
    std::fputs("\r\033[K", m_pOut);
    std::fflush(m_pOut);
    m_Shown = false;
}

bool Progress::IsDue() {
    if (!m_On)
        return false;
    const auto now = std::chrono::steady_clock::now();
    if (m_Next == std::chrono::steady_clock::time_point{})
        m_Next = now + s_Pause;
    if (now < m_Next)
        return false;
    m_Next = now + s_Pause;
    return true;
}

void Progress::Show(const std::string& text) {
    // One column less than the terminal has, since a full line may wrap.
    const std::string shown = text.substr(0, static_cast<size_t>(std::max(m_Width - 1, 0)));
    std::fprintf(m_pOut, "\r\033[K%s", shown.c_str());
    std::fflush(m_pOut);
    m_Shown = true;
}
