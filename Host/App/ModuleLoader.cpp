#include "Host/App/ModuleLoader.h"

#include "Host/App/Messages.h"
#include "Host/Sdk/ClassIds.h"
#include "Host/Sdk/Resources.h"
#include "Shared/PC/Console/Terminal.h"
#include "Shared/PC/Debug/Process.h"

#include <cstdio>

namespace {

constexpr const char* s_ModuleFile = "PVXExport.so";
constexpr const char* s_ModuleVariable = "PVXHOST_MODULE";

std::string VersionText(uint32_t version) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08x", version);
    return text;
}

} // namespace

void ModuleLoader::Load() {
    const std::string named = Terminal::GetVariable(s_ModuleVariable);
    if (named.empty())
        m_Path = Process::GetExecutableFolder() + s_ModuleFile;
    else
        // Without a slash the name would be searched for along the system's library folders.
        m_Path = named.find('/') == std::string::npos ? "./" + named : named;
    if (named.empty() ? m_Module.LoadOwn(s_ModuleFile) : m_Module.Load(m_Path))
        return;
    throw HostError(2, "the export module can't be loaded: " + m_Module.GetError() + "; build it, or name another by " +
                           s_ModuleVariable);
}

ModuleLoader::ModuleLoader() {
    Load();
    m_Version = FindEntry<LibVersionFunction>("LibVersion");
    // Asked first: of another version's module nothing else is known.
    if (m_Version() != SdkVersionWord)
        throw HostError(2, m_Path + ": is built for host version " + VersionText(m_Version()) + ", this is " +
                               VersionText(SdkVersionWord) + "; build module and host together");
    m_Main = FindEntry<DllMainFunction>("DllMain");
    m_Description = FindEntry<LibDescriptionFunction>("LibDescription");
    m_NumberClasses = FindEntry<LibNumberClassesFunction>("LibNumberClasses");
    m_ClassDesc = FindEntry<LibClassDescFunction>("LibClassDesc");
    if (!m_Main(GetHandle(), DLL_PROCESS_ATTACH, nullptr))
        throw HostError(2, m_Path + ": the module refuses to start");
}

ModuleLoader::~ModuleLoader() {
    m_Main(GetHandle(), DLL_PROCESS_DETACH, nullptr);
    UnregisterResources(GetHandle());
}

template <class Function>
Function ModuleLoader::FindEntry(const char* pSymbol) const {
    void* pEntry = m_Module.Find(pSymbol);
    if (!pEntry)
        throw HostError(2, m_Path + ": has no function \"" + pSymbol + "\" and so is no module of this host");
    return reinterpret_cast<Function>(pEntry);
}

std::unique_ptr<SceneExport> ModuleLoader::CreateExporter() const {
    for (int i = 0; i < m_NumberClasses(); ++i) {
        ClassDesc* pClass = m_ClassDesc(i);
        if (pClass && pClass->SuperClassID() == SCENE_EXPORT_CLASS_ID)
            return std::unique_ptr<SceneExport>(static_cast<SceneExport*>(pClass->Create(false)));
    }
    throw HostError(2, m_Path + ": holds no class for scene export");
}
