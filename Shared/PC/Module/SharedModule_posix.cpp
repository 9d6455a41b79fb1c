#include "Shared/PC/Module/SharedModule.h"

#include "Shared/PC/Debug/Process.h"

#include <dlfcn.h>

SharedModule::~SharedModule() {
    if (m_pHandle)
        dlclose(m_pHandle);
}

bool SharedModule::Load(const std::string& nativePath) { return Open(nativePath, RTLD_NOW); }

bool SharedModule::LoadOwn(const std::string& name) {
    if (Open(Process::GetExecutableFolder() + name, RTLD_LAZY))
        return true;
    const std::string error = m_Error;
    if (Open(name, RTLD_LAZY))
        return true;
    m_Error = error;
    return false;
}

bool SharedModule::LoadByName(const std::string& name) { return Open(name, RTLD_NOW); }

bool SharedModule::Open(const std::string& name, int binding) {
    m_pHandle = dlopen(name.c_str(), binding | RTLD_LOCAL | RTLD_NODELETE);
    if (!m_pHandle)
        m_Error = dlerror();
    return m_pHandle != nullptr;
}

void* SharedModule::Find(const char* pSymbol) const { return m_pHandle ? dlsym(m_pHandle, pSymbol) : nullptr; }
