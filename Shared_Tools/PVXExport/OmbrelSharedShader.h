// Textures that many models share lie in shader files of their own.
#pragma once

namespace OmbrelSharedShader {

// By the name, whose case doesn't count.
bool IsSharedTextureName(const char* pName);

} // namespace OmbrelSharedShader
