// The scene's motion becomes the model's animation.
#pragma once

struct ExportContext;
struct ExportScene;
class Interface;
class RenderModel;

namespace AnimSampling {

// Adds one animation, named like the model, to the model's list. The model has its skeleton and mesh group. Every bone
// and camera is sampled at every frame, in the world; controls only where they change.
void Sample(const ExportScene& scene, const ExportContext& context, const Interface& host, RenderModel& model);

// Has the animation's references, which count the scene's lists, count the mesh group's, and names them. False when the
// two don't fit.
bool RebindToMeshGroup(const ExportScene& scene, RenderModel& model);

} // namespace AnimSampling
