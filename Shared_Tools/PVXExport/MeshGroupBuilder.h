// The group that ties the model's meshes to its skeleton.
#pragma once

struct ExportContext;
struct ExportScene;
class RenderModel;

namespace MeshGroupBuilder {

// Gives the model its mesh group and the scene's skeleton. False, which is reported when meshes are wanted, without
// meshes.
bool Build(ExportScene& scene, const ExportContext& context, RenderModel& model);

} // namespace MeshGroupBuilder
