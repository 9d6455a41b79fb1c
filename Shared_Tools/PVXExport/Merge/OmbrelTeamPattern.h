#pragma once

#include <memory>

class Pattern;

// Team colour patterns out of the pictures that an artist paints beside a texture, "<texture>_<scheme>_<layer>.tga".
namespace OmbrelTeamPattern {

// Writes the texture's pattern of the default scheme into the project's generic tree, and burns it. A texture without
// layers has none, which is no failure. Throws std::runtime_error for pictures that don't fit together, and what
// MergeBurnWrite throws.
bool ExportTeamPattern(const char* pProject, const char* pTextureName);

// From the project's source tree; null without a texture or without any layer. Layers that are missed are reported in
// the log. Throws std::runtime_error as above.
std::unique_ptr<Pattern> MakeTeamPattern(const char* pProject, const char* pSchemeName, const char* pTextureName);

} // namespace OmbrelTeamPattern
