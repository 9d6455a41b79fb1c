#pragma once

#include "Host/Sdk/Types.h"

#include <string>

// The root of everything in the scene that has a class.
class Animatable {
public:
    virtual ~Animatable();

    virtual SClass_ID SuperClassID() const = 0;
    virtual Class_ID ClassID() const = 0;

    // The class's name, for messages.
    virtual void GetClassName(std::string& out) const = 0;

    // What else the object can do: I_SKIN gives an ISkin on the Skin modifier. Null for an id that it doesn't know.
    // What was got is given back with ReleaseInterface, under the same id.
    virtual void* GetInterface(uint32_t id);
    virtual void ReleaseInterface(uint32_t id, void* pInterface);

protected:
    Animatable() = default;
    Animatable(const Animatable&) = default;
    Animatable& operator=(const Animatable&) = default;
};

// What moves something: here, the transformation of a node.
class Control : public Animatable {
public:
    ~Control() override;
    SClass_ID SuperClassID() const override;
};
