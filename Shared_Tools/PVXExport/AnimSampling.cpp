#include "Shared_Tools/PVXExport/AnimSampling.h"

namespace AnimSampling {

void Sample(ExportScene&, const ExportContext&, RenderModel&) {}

bool RebindToMeshGroup(const ExportScene&, RenderModel&) { return true; }

} // namespace AnimSampling
