#pragma once

#include "Shared/Cross/Glaze/Object.h"

namespace gz {

// The renderer's side of a material. What decides how it is drawn and is in no file is kept only here.
class Shader : public Core {
public:
    virtual float GetShininess() const = 0;
    virtual void SetShininess(float shininess) = 0;
    virtual bool IsSupersampled() const = 0;
    virtual void SetSupersample(bool supersample) = 0;
};

// Turns a material's description into what a driver draws with. The tools' devices draw nothing and have no need of it.
class ShaderCompiler : public Core {
public:
    // False when this device can't compile.
    virtual bool Compile(Shader& shader) = 0;
};

} // namespace gz
