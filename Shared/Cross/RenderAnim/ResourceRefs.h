#pragma once

#include "Shared/Cross/Assist/Inventory.h"

class RenderModel;
class Shader;
class Texture;

namespace ra {
class Mesh;
}

// Shared holds on resources of the inventory. A record that is held is never purged.
using MeshRef = Inv::Handle<ra::Mesh>;
using ShaderRef = Inv::Handle<Shader>;
using TextureRef = Inv::Handle<Texture>;
using RenderModelRef = Inv::Handle<RenderModel>;
