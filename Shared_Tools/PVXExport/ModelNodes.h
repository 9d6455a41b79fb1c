// What the model has beside its meshes: skeleton, markers, cameras, and the group that ties the meshes to it.
#pragma once

#include <memory>

struct ExportContext;
struct ExportScene;
class RenderModel;

namespace ModelNodes {

void AddMarkers(const ExportScene& scene, const ExportContext& context, RenderModel& model);
void AddCameras(const ExportScene& scene, const ExportContext& context, RenderModel& model);

// Makes the scene's skeleton of its bones; none without bones.
void BuildSkeleton(ExportScene& scene);

// Gives the model its mesh group and the skeleton. False, which is reported when meshes are wanted, without meshes.
bool BuildMeshGroup(ExportScene& scene, const ExportContext& context, RenderModel& model);

} // namespace ModelNodes
