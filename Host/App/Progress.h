#pragma once

#include "Host/Scene/Scene.h"

#include <chrono>
#include <cstdio>
#include <string>

// One line on the terminal that tells how far an export or a merge is; it rewrites itself and is gone at the end.
// Writes nothing when it is off.
class Progress : public scene::SceneObserver {
public:
    Progress(std::FILE* pOut, bool on, int width) : m_pOut(pOut), m_On(on), m_Width(width) {}
    ~Progress() override { Clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // A stage without a measure.
    void SetStage(const std::string& stage);
    // Takes the line away, before something else is printed.
    void Clear();

    // What the shares are of.
    void SetTotals(size_t meshes, Interval range);

    void OnMesh(const scene::Node& node) override;
    void OnTick(TimeValue t) override;

    // How many meshes the export has asked for.
    size_t GetMeshCount() const { return m_MeshCount; }

private:
    bool IsDue();
    void Show(const std::string& text);

    std::FILE* m_pOut;
    bool m_On;
    int m_Width;
    size_t m_MeshCount = 0;
    size_t m_MeshTotal = 0;
    Interval m_Range{0, 0};
    bool m_Shown = false;
    std::chrono::steady_clock::time_point m_Next{}; // no earlier than this
};
