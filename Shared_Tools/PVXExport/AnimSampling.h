// The scene's motion becomes the model's animation.
#pragma once

struct ExportContext;
struct ExportScene;
class RenderModel;

namespace AnimSampling {

// Adds one animation, named like the model, to the model's list. The model has its skeleton and mesh group.
//
// Nothing is sampled yet: the list stays empty.
void Sample(ExportScene& scene, const ExportContext& context, RenderModel& model);

// Has the animation's references, which count the scene's lists, count the mesh group's. False when the two don't fit.
bool RebindToMeshGroup(const ExportScene& scene, RenderModel& model);

} // namespace AnimSampling
