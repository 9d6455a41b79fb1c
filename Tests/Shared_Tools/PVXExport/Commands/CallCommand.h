#pragma once

#include <stdexcept>
#include <vector>

#include "Host/Sdk/Primitive.h"

// As the host's script layer calls a registered command.
inline Value Call(const char* pCommand, const std::vector<Value>& arguments) {
    const Primitive* pPrimitive = Primitive::Find(pCommand);
    if (!pPrimitive)
        throw std::runtime_error(std::string(pCommand) + " isn't registered");
    return pPrimitive->Apply(arguments);
}
