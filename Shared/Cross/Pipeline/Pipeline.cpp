#include "Shared/Cross/Pipeline/Pipeline.h"

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/Pipeline/BugReportPath.h"
#include "Shared/Cross/Pipeline/PipelineData.h"
#include "Shared/Cross/Pipeline/TextUtil.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared/PC/Program/ProgramPath.h"

#include <algorithm>
#include <charconv>
#include <cmath>

std::unique_ptr<Pipeline> Pipeline::s_instance;

namespace {

std::string& GetErrorText() {
    static std::string s_Text;
    return s_Text;
}

std::string ListPlaces(const std::vector<std::string>& places) {
    std::string text = "no pipeline.ini";
    for (const std::string& place : places)
        text += (&place == &places.front() ? " in " : ", ") + (place.ends_with(':') ? place + "\\" : place);
    return text;
}

// A value that doesn't fit is the caller's mistake.
bool CopyValue(const std::string& value, char* pOut, uint32_t outLen) {
    if (CopyOut(value, pOut, outLen))
        return true;
    dbBreak();
    return false;
}

} // namespace

const PipelineProject* PipelineData::FindProject(const char* pName) const {
    const auto it = projectIndex.find(ToLower(std::string_view(pName ? pName : "")));
    return it != projectIndex.end() ? &projects[it->second] : nullptr;
}

const std::string* PipelineData::FindValue(const char* pSection, const char* pKey) const {
    const auto section = std::ranges::find_if(
        sections, [&](const PipelineSection& candidate) { return EqualNoCase(candidate.name, pSection); });
    if (section == sections.end())
        return nullptr;
    const auto value = std::ranges::find_if(section->values,
                                            [&](const auto& candidate) { return EqualNoCase(candidate.first, pKey); });
    return value != section->values.end() ? &value->second : nullptr;
}

Pipeline::Pipeline(std::unique_ptr<PipelineData> pData) : m_pData(std::move(pData)) {}

Pipeline::~Pipeline() = default;

int Pipeline::Initialize(const char* pStartPath) {
    dbAssertText(!s_instance, "s_instance == NULL");
    GetErrorText().clear();
    const std::string start = pStartPath ? pStartPath : OSFile::FromNative(ProgramPath::Get());
    auto pData = std::make_unique<PipelineData>();
    std::vector<std::string> places;
    pData->inifile = PipelineReader::Find(start, places);
    Result result = Result_NoFile;
    if (pData->inifile.empty())
        GetErrorText() = ListPlaces(places);
    else
        result = PipelineReader::Read(*pData, GetErrorText());
    if (result == Result_Ok) {
        s_instance.reset(new Pipeline(std::move(pData)));
        SetBugReportPath(*s_instance);
    } else
        dbWarningf("PIPELINE -- %s", GetErrorText().c_str());
    return result;
}

const std::string& Pipeline::GetInitializeError() { return GetErrorText(); }

void Pipeline::Shutdown() {
    dbAssertText(s_instance, "s_instance != NULL");
    s_instance.reset();
}

Pipeline* Pipeline::Get() {
    dbAssertText(s_instance, "s_instance != NULL");
    return s_instance.get();
}

bool Pipeline::IsInitialized() { return s_instance != nullptr; }

const char* Pipeline::GetIniFile() const { return m_pData->inifile.c_str(); }

bool Pipeline::GetString(const char* pSection, const char* pKey, std::string& out) const {
    const std::string* const pValue = m_pData->FindValue(pSection, pKey);
    out = pValue ? *pValue : "";
    return pValue != nullptr;
}

bool Pipeline::GetString(const char* pSection, const char* pKey, char* pOut, uint32_t outLen) const {
    std::string value;
    const bool found = GetString(pSection, pKey, value);
    return CopyValue(value, pOut, outLen) && found;
}

bool Pipeline::GetPath(const char* pSection, const char* pKey, std::string& out) const {
    if (!GetString(pSection, pKey, out))
        return false;
    out = PipelinePath::Anchor(m_pData->inifile, out);
    return true;
}

bool Pipeline::GetPath(const char* pSection, const char* pKey, char* pOut, uint32_t outLen) const {
    std::string path;
    const bool found = GetPath(pSection, pKey, path);
    return CopyValue(path, pOut, outLen) && found;
}

bool Pipeline::GetFloat(const char* pSection, const char* pKey, float& out) const {
    out = 0.0f;
    std::string value;
    if (!GetString(pSection, pKey, value))
        return false;
    const bool hasPlus = value.starts_with('+') && !value.starts_with("+-");
    const char* const pEnd = value.data() + value.size();
    float number = 0.0f;
    const auto [pStop, error] = std::from_chars(value.data() + (hasPlus ? 1 : 0), pEnd, number);
    if (error != std::errc() || pStop != pEnd || !std::isfinite(number))
        return false;
    out = number;
    return true;
}

bool Pipeline::GetBool(const char* pSection, const char* pKey, bool& out) const {
    std::string value;
    if (!GetString(pSection, pKey, value))
        return false;
    const auto isOneOf = [&](std::initializer_list<const char*> words) {
        return std::ranges::any_of(words, [&](const char* pWord) { return EqualNoCase(value, pWord); });
    };
    const bool isTrue = isOneOf({"true", "yes", "1"});
    if (!isTrue && !isOneOf({"false", "no", "0"}))
        return false;
    out = isTrue;
    return true;
}

uint32_t Pipeline::SectionCount() const { return static_cast<uint32_t>(m_pData->sections.size()); }

const char* Pipeline::GetSectionName(uint32_t index) const {
    dbAssert(index < SectionCount());
    return index < SectionCount() ? m_pData->sections[index].name.c_str() : nullptr;
}

uint32_t Pipeline::ProjectCount() const { return static_cast<uint32_t>(m_pData->projects.size()); }

const char* Pipeline::GetProjectName(uint32_t index) const {
    dbAssert(index < ProjectCount());
    return index < ProjectCount() ? m_pData->projects[index].name.c_str() : nullptr;
}

bool Pipeline::HasProject(const char* pName) const { return m_pData->FindProject(pName) != nullptr; }

const char* Pipeline::GetDescription(const char* pName) const {
    const PipelineProject* const pProject = m_pData->FindProject(pName);
    return pProject ? pProject->description.c_str() : nullptr;
}

const char* Pipeline::GetParent(const char* pName) const {
    const PipelineProject* const pProject = m_pData->FindProject(pName);
    return pProject ? pProject->parent.c_str() : nullptr;
}

const char* Pipeline::GetFolder(const char* pName, DataKind kind) const {
    dbAssert(kind < KindCount);
    const PipelineProject* const pProject = m_pData->FindProject(pName);
    return pProject && kind < KindCount ? pProject->folders[kind].c_str() : nullptr;
}

std::string Pipeline::GetFullPath(const char* pPath) { return PipelinePath::MakeAbsolute(pPath); }

const char* Pipeline::FindProjectForFile(const char* pFullPath, DataKind kind) const {
    dbAssert(kind < KindCount);
    if (!pFullPath || !*pFullPath || kind >= KindCount)
        return nullptr;
    const std::string path = GetFullPath(pFullPath);
    for (const PipelineProject& project : m_pData->projects) {
        const std::string& folder = project.folders[kind];
        // A folder of a longer name that begins alike is another one.
        if (StartsWithNoCase(path, folder) && (path.size() == folder.size() || path[folder.size()] == '\\'))
            return project.name.c_str();
    }
    return nullptr;
}
