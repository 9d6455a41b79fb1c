#pragma once

namespace ra {

// Has shaders and textures that are asked for by name loaded from files of their own, in the form that the tools load
// switch says: for programs that read models at more than the exporter's level.
void InstallResourceLoaders();

} // namespace ra
