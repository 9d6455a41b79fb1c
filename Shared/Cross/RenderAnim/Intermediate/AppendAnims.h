#pragma once

class Chunky;
class RenderModel;

namespace ra::intermediate {

// Reads the next chunk, an "ANIM", into the inventory and the model's list. Throws what ReadLocalAnim throws.
void AppendAnim(Chunky& chunky, RenderModel& model);

} // namespace ra::intermediate
