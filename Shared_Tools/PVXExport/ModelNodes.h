// What the model has beside its meshes: skeleton, markers, cameras.
#pragma once

struct ExportContext;
struct ExportScene;
class RenderModel;

namespace ModelNodes {

void AddMarkers(const ExportScene& scene, const ExportContext& context, RenderModel& model);
void AddCameras(const ExportScene& scene, const ExportContext& context, RenderModel& model);

// Makes the scene's skeleton of its bones; none without bones.
void BuildSkeleton(ExportScene& scene);

} // namespace ModelNodes
