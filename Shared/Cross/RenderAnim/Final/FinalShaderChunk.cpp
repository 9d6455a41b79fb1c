#include "Shared/Cross/RenderAnim/Final/FinalShaderChunk.h"

#include "Shared/Cross/RenderAnim/Shader.h"

// "SSHR", data, version 2, name of the shader: a shader that lies in a file of its own. The chunk's name is what
// counts.
//   string     the same name, for readers of version 1

namespace ra {

namespace {

constexpr uint32_t s_FinalSharedShaderVersion = 2;

} // namespace

void WriteFinalShader(Chunky& chunky, PayloadWriter& writer, const Shader& shader) {
    if (!shader.IsShared()) {
        WriteShader(chunky, writer, shader);
        return;
    }
    writer.WriteString(shader.GetName());
    writer.WriteChunk(chunky, s_SharedShaderChunk, s_FinalSharedShaderVersion, shader.GetName());
}

std::string ReadFinalSharedShaderName(Chunky& chunky) {
    const ChunkInfo info = chunky.EnterData(s_SharedShaderChunk, s_FinalSharedShaderVersion);
    chunky.EndChunk();
    return std::string(info.name.GetView());
}

std::unique_ptr<Shader> ShaderLoadFinal(Chunky& chunky) {
    return MakeShader(ReadShaderRecord(chunky), ShaderForm::Final);
}

} // namespace ra
