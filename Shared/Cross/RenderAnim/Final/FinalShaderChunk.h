#pragma once

#include <memory>
#include <string>

#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"

namespace ra {

// Shaders in the game's own files. A "SHDR" is the generic one, a "SSHR" has a version of its own.

// A shared shader is only named.
void WriteFinalShader(Chunky& chunky, PayloadWriter& writer, const Shader& shader);
// The next chunk is a "SSHR". Gives the shader's name.
std::string ReadFinalSharedShaderName(Chunky& chunky);
// The next chunk is a "SHDR". The shader is nobody's yet; see MakeShader.
std::unique_ptr<Shader> ShaderLoadFinal(Chunky& chunky);

} // namespace ra
