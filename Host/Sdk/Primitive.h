#pragma once

#include "Host/Sdk/Value.h"

#include <span>

// A command of the script language, implemented by a module: a static object, which registers itself when the module is
// loaded and takes itself out when it is unloaded.
class Primitive {
public:
    // The arguments and their count. What is thrown reaches the script as an error.
    using Function = Value (*)(const Value* pArguments, int count);

    // The name must outlive the object.
    Primitive(const char* pName, Function function);
    ~Primitive();
    Primitive(const Primitive&) = delete;
    Primitive& operator=(const Primitive&) = delete;

    const char* GetName() const { return m_pName; }
    Value Apply(std::span<const Value> arguments) const;

    // Names are found without regard to case; the latest registered of that name counts. Null for an unknown one.
    static const Primitive* Find(std::string_view name);
    // All registered commands, sorted by name.
    static std::vector<const Primitive*> GetAll();

private:
    const char* m_pName;
    Function m_Function;
    Primitive* m_pNext;
};
