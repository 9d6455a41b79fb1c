#pragma once

#include <string>

// A shared object that is loaded by name while the program runs.
class SharedModule {
public:
    SharedModule() = default;
    // Lets it go.
    ~SharedModule();
    SharedModule(const SharedModule&) = delete;
    SharedModule& operator=(const SharedModule&) = delete;

    // A module written for us. It stays in the process to its end, even when nobody holds it any more: such a module
    // keeps things that are good for as long as the process runs, and may have handed them out. The path is in the
    // machine's own form, and has a slash in it: nothing is searched for. False when it can't be loaded, or needs what
    // the program hasn't got; GetError says why.
    bool Load(const std::string& nativePath);
    // One that was built with the program, by its file's name: it lies beside the program, or where a host that lies
    // elsewhere finds our other libraries. What it needs is there, so each function is looked up at its first call,
    // which takes a fraction of the time. GetError tells of the first place.
    bool LoadOwn(const std::string& name);
    // A library of the system, by the name alone; the system knows where it keeps those. It stays
    // as well, since not every library cleans up behind itself. False as above.
    bool LoadByName(const std::string& name);
    // The address of a symbol with plain C linkage; null when there is none.
    void* Find(const char* pSymbol) const;
    const std::string& GetError() const { return m_Error; }

private:
    bool Open(const std::string& name, int binding);

    void* m_pHandle = nullptr;
    std::string m_Error;
};
