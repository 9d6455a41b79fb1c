#include "Tools/pvxdump/GameLoad.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/Pipeline/ToolsData.h"
#include "Shared/Cross/RenderAnim/Chunks/XRefMesh.h"
#include "Shared/Cross/RenderAnim/Files/ResourceLoaders.h"
#include "Shared/Cross/RenderAnim/Final/FinalFile.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/MeshGroup.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/ShaderTypeInfo.h"
#include "Shared/PC/FileSystem/OSFile.h"

namespace {

std::vector<std::string> s_Warnings;
std::string s_LoadError;

// Without the place in the code, "stem/line:!", which is for developers, and without a line end.
std::string WithoutPlace(std::string_view line) {
    line = line.substr(0, line.find_last_not_of('\n') + 1);
    const size_t mark = line.find(":!");
    return std::string(mark != line.npos && line.find(' ') > mark ? line.substr(mark + 2) : line);
}

void TakeWarning(dbMessage message) {
    for (const char* pLine : message)
        s_Warnings.push_back(WithoutPlace(pLine));
}

void TakeLoadError(const char* pText) { s_LoadError = pText; }

std::string GetLastWarning() { return s_Warnings.empty() ? "it makes no sense" : s_Warnings.back(); }

// Two names in a warning of the form: start, first name, middle, second name, end.
struct NamePair {
    std::string first;
    std::string second;

    static bool Read(std::string_view text, std::string_view start, std::string_view middle, std::string_view end,
                     NamePair& out) {
        const size_t place = text.find(middle, start.size());
        if (!text.starts_with(start) || !text.ends_with(end) || place == text.npos)
            return false;
        const size_t second = place + middle.size();
        if (second + end.size() > text.size())
            return false;
        out = {std::string(text.substr(start.size(), place - start.size())),
               std::string(text.substr(second, text.size() - end.size() - second))};
        return true;
    }
};

// What the inventory says when another resource stands in for one: its kind and name.
bool ReadStandIn(std::string_view text, NamePair& out) {
    return NamePair::Read(text, "Unable to load '", "' resource '", "', using default!", out);
}

// What a shader says when nobody has a texture: both names.
bool ReadMissingTexture(std::string_view text, NamePair& out) {
    return NamePair::Read(text, "TEXTURES -- '", "': unable to find texture '", "'. Using pink!", out);
}

// The error sink's line names the file, which whoever asked for it knows, unless it is another one.
std::string WithoutFile(std::string_view error, const std::string& name) {
    for (const std::string& start : {std::string("RENDER ANIM -- "), name + ": "})
        if (error.starts_with(start))
            error.remove_prefix(start.size());
    return std::string(error);
}

std::string DescribePipelineFault(int result, const std::string& path) {
    if (result != Pipeline::Result_NoFile)
        return Pipeline::GetInitializeError();
    const std::string folder = path.substr(0, path.find_last_of('\\'));
    return "lies in no project: there is no pipeline.ini in \"" + OSFile::ToNative(folder) + "\" or above it";
}

} // namespace

struct GameLoad::Services {
    // Throws what the constructor of GameLoad throws; ends as the destructor does.
    explicit Services(const std::string& path) {
        s_Warnings.clear();
        s_LoadError.clear();
        dbAddWarningSubscriber(TakeWarning);
        ra::SetErrorSink(TakeLoadError);
        try {
            Start(path);
        } catch (...) {
            Stop();
            throw;
        }
    }
    ~Services() { Stop(); }
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;

    void Start(const std::string& path) {
        if (const int result = Pipeline::Initialize(path.c_str()); result != Pipeline::Result_Ok)
            throw std::runtime_error(DescribePipelineFault(result, path));
        const char* pProject = Pipeline::Get()->FindProjectForFile(path.c_str(), Pipeline::Kind_Final);
        if (!pProject)
            throw std::runtime_error("lies in the final folder of no project of \"" +
                                     OSFile::ToNative(Pipeline::Get()->GetIniFile()) + "\"");
        finalFolder = Pipeline::Get()->GetFolder(pProject, Pipeline::Kind_Final);
        project = Pipeline::Get()->CreateMapper(pProject, Pipeline::Kind_Final, false);
        project.MapReadOnly();
        if (!toolsData.Map())
            throw std::runtime_error(GetLastWarning());
        if (!gz::Start({.name = "Null"}))
            throw std::runtime_error("there is no device \"Null\"");
        Inv::Initialize();
        ra::SetGenericLoad(false);
        ra::InstallResourceLoaders();
        ra::InstallFinalModelLoader();
    }
    void Stop() {
        if (Inv::IsInitialized())
            Inv::Shutdown();
        gz::Stop();
        toolsData.Unmap();
        project = {};
        if (Pipeline::IsInitialized())
            Pipeline::Shutdown();
        ra::SetErrorSink(nullptr);
        dbRemoveWarningSubscriber(TakeWarning);
    }

    // Sorts what the loading has said.
    void TakeWarnings() {
        for (std::string& text : s_Warnings)
            if (NamePair names; ReadStandIn(text, names))
                standIns.push_back(std::move(names));
            else if (ReadMissingTexture(text, names))
                missingTextures.push_back(std::move(names));
            else if (std::ranges::find(warnings, text) == warnings.end())
                warnings.push_back(std::move(text));
        s_Warnings.clear();
    }

    bool HasStandIn(const Inv::ResourceTypeInfo& info, const char* pName) const {
        std::string wanted;
        info.TranslateName(wanted, pName);
        return std::ranges::any_of(standIns, [&](const NamePair& standIn) {
            std::string name;
            info.TranslateName(name, standIn.second.c_str());
            return standIn.first == info.GetTypeName() && name == wanted;
        });
    }

    ToolsData toolsData;
    Pipeline::Mapper project;
    std::string finalFolder;
    std::vector<NamePair> standIns;        // for what: kind and name
    std::vector<NamePair> missingTextures; // of which shader, and which
    std::vector<std::string> warnings;
};

GameLoad::GameLoad(const std::string& path) : m_pServices(std::make_unique<Services>(path)) {
    const std::string& folder = m_pServices->finalFolder;
    m_Name = "DATA:" + path.substr(std::min(path.size(), folder.size() + (folder.ends_with('\\') ? 0 : 1)));
    FilePathUtil::SetExtension(m_Name, ".obm");
    m_pModel = ra::LoadFinal(m_Name.c_str());
    if (!m_pModel)
        throw std::runtime_error(s_LoadError.empty() ? GetLastWarning() : WithoutFile(s_LoadError, m_Name));
    m_pServices->TakeWarnings();
}

GameLoad::~GameLoad() = default;

const RenderModel& GameLoad::GetModel() const { return *m_pModel; }

const std::vector<std::string>& GameLoad::GetWarnings() const { return m_pServices->warnings; }

bool GameLoad::IsMissing(const Shader& shader) const {
    return m_pServices->HasStandIn(Shader::GetTypeInfo(), shader.GetName()) || GetDefaultShader().GetData() == &shader;
}

bool GameLoad::IsMeshMissing(const ra::MeshGroup& group, uint32_t index) const {
    const MeshRef& mesh = group.GetMesh(index);
    if (group.IsLocal(index))
        return !mesh.IsValid();
    return !mesh.IsValid() || mesh == ra::GetMissingMesh() ||
           m_pServices->HasStandIn(RenderModel::GetTypeInfo(), group.GetXRefName(index).GetTextOrEmpty());
}

std::vector<std::string> GameLoad::GetMissingTextures(const Shader& shader) const {
    std::vector<std::string> names;
    for (const NamePair& texture : m_pServices->missingTextures)
        if (texture.first == shader.GetName())
            names.push_back(texture.second);
    return names;
}
