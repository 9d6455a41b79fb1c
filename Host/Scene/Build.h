#pragma once

#include "Host/Scene/Materials.h"
#include "Host/Scene/Modifiers.h"
#include "Host/Scene/Objects.h"
#include "Host/Scene/Scene.h"
#include "Host/Sdk/Mesh.h"

namespace scene {

// Short ways to nodes with their objects. `pParent` null is the root.

Node& AddMesh(Scene& scene, std::string name, Mesh mesh, Mtl* pMaterial = nullptr, Node* pParent = nullptr);
Node& AddMesh(Scene& scene, std::string name, std::unique_ptr<MeshSource> pSource, Mtl* pMaterial = nullptr,
              Node* pParent = nullptr);
// An editable mesh in the shape of a box.
Node& AddBox(Scene& scene, std::string name, const Point3& size, Mtl* pMaterial = nullptr, Node* pParent = nullptr);
// A bone object, without a mesh.
Node& AddBone(Scene& scene, std::string name, Node* pParent = nullptr);
Node& AddDummy(Scene& scene, std::string name, Node* pParent = nullptr);
Node& AddPoint(Scene& scene, std::string name, Node* pParent = nullptr);
Node& AddLight(Scene& scene, std::string name, LightClass kind, Node* pParent = nullptr);
// With a target a target camera, whatever the settings say.
Node& AddCamera(Scene& scene, std::string name, CameraSettings settings, Node* pTarget = nullptr,
                Node* pParent = nullptr);

// Makes the node's object one that comes from another scene file.
void MakeXRef(Node& node, std::string fileName);

// Puts a skin on the node: its object is in world space from now on.
SkinModifier& AddSkin(Node& node, std::vector<SkinBone> bones, std::unique_ptr<SkinSource> pSource);

// A box about the origin: 8 vertices, 12 faces, a smoothing group and a material id (0 to 5: -X, +X, -Y, +Y, -Z, +Z)
// for each side, and on each side the whole of the texture.
Mesh MakeBoxMesh(const Point3& size);

} // namespace scene
