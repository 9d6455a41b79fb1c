#pragma once

#include "Host/Sdk/Plugin.h"
#include "Shared/PC/Module/SharedModule.h"

#include <memory>
#include <string>

// The export module, loaded: its entry points, found by symbol.
class ModuleLoader {
public:
    // Loads the module that the environment names (PVXHOST_MODULE), else the one beside the executable; checks the
    // version word, and tells it that it was attached. Throws a HostError that names the file when it can't be loaded,
    // lacks an entry point or was built for another host.
    ModuleLoader();
    // Tells the module that it is detached. Its code stays in the process. What was made of its classes has to be gone
    // by then.
    ~ModuleLoader();
    ModuleLoader(const ModuleLoader&) = delete;
    ModuleLoader& operator=(const ModuleLoader&) = delete;

    const char* GetDescription() const { return m_Description(); }

    // A new object of the module's first class for scene export. Throws a HostError when it has none.
    std::unique_ptr<SceneExport> CreateExporter() const;

private:
    void Load();
    template <class Function>
    Function FindEntry(const char* pSymbol) const;
    HINSTANCE GetHandle() { return reinterpret_cast<HINSTANCE>(&m_Module); }

    std::string m_Path;
    SharedModule m_Module;
    DllMainFunction m_Main = nullptr;
    LibDescriptionFunction m_Description = nullptr;
    LibNumberClassesFunction m_NumberClasses = nullptr;
    LibClassDescFunction m_ClassDesc = nullptr;
    LibVersionFunction m_Version = nullptr;
};
