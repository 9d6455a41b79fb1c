#pragma once

// Textures that many models share lie in shader files of their own; the name tells which they are.
namespace OmbrelSharedShader {

// Whether the name holds "texture_share", whose case doesn't count.
bool IsSharedTextureName(const char* pName);

} // namespace OmbrelSharedShader
