#pragma once

#include "Shared/Cross/Pipeline/Pipeline.h"

#include <array>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

// What was read from "pipeline.ini", and the work on it that the files of this folder share.

struct PipelineProject {
    std::string name; // in lower case
    std::string description;
    std::string parent; // as written
    std::array<std::string, Pipeline::KindCount> folders;
    std::vector<std::string> extras; // further final folders
};

struct PipelineSection {
    std::string name;
    std::vector<std::pair<std::string, std::string>> values;
};

struct PipelineData {
    std::string inifile;
    std::vector<PipelineProject> projects;
    std::vector<PipelineSection> sections; // those that aren't projects
    std::map<std::string, size_t, std::less<>> projectIndex;

    // Null for an unknown name, or none.
    const PipelineProject* FindProject(const char* pName) const;
    // Null for an unknown section or key.
    const std::string* FindValue(const char* pSection, const char* pKey) const;
};

namespace PipelineReader {

// Full name of the first "pipeline.ini" in the folder of startPath or above it; empty, with the places that were looked
// at, if there is none.
std::string Find(std::string_view startPath, std::vector<std::string>& places);
// One of Pipeline::Result. The reason, for all but 0, stands in `error`.
Pipeline::Result Read(PipelineData& data, std::string& error);

} // namespace PipelineReader

namespace PipelinePath {

// A path without a drive counts from the folder of the ini file. Backslashes only.
std::string Anchor(const std::string& inifile, std::string_view path);
// By the system's rules: with a drive, and dots resolved.
std::string MakeAbsolute(std::string_view path);
std::string WithBackslashes(std::string_view path);

} // namespace PipelinePath
