#pragma once

// The tools' own data, the folder "ToolsData" of section "Global", as a source of "DATA" with the id "Tools Data" at
// priority 400: above every project, and for reading only, so that what is written under "DATA" reaches the project.
class ToolsData {
public:
    ToolsData() = default;
    ~ToolsData() { Unmap(); }
    ToolsData(const ToolsData&) = delete;
    ToolsData& operator=(const ToolsData&) = delete;

    // Pipeline is up. False, and a line in the log, when the key is missing or the folder can't be mapped.
    bool Map();
    // What isn't mapped is no mistake.
    void Unmap();

private:
    bool m_Mapped = false;
};
