// Floats of materials and meshes that change over the animation become its control streams.
#pragma once

#include <span>

struct ExportContext;
struct ExportScene;
struct AnimFrame;
class Anim;

namespace ControlTracks {

// Both add streams to the animation, which refer to the scene's lists by index and have no names yet.

// Self-illumination, opacity, the amount of the diffuse map, and the motion of all maps. A material's channel whose
// map fades in and out has its mode changed for that.
void AddMaterials(const ExportScene& scene, const ExportContext& context, std::span<const AnimFrame> frames,
                  Anim& anim);
// Each mesh gets one, of a single key when it doesn't change.
void AddVisibility(const ExportScene& scene, std::span<const AnimFrame> frames, Anim& anim);

} // namespace ControlTracks
