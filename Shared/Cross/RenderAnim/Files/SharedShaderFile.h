#pragma once

#include <cstdint>
#include <memory>

class ByteStream;
class Chunky;
class Shader;

// A shader in a file of its own, ".qsh", with all textures that it uses, for the models that name it.

namespace ra {

// The generic form. The shader isn't marked as shared at that time: of a shared one the file would hold nothing but the
// name. False, with a line in the log, when the file can't be written.
bool SaveSharedShader(const char* pPath, const Shader& shader);
// The final form. `useDXTC` as for WriteFinalTexture, and false for a level that couldn't be converted, too.
bool SaveSharedShaderFinal(const char* pPath, const Shader& shader, uint32_t useDXTC);
// The same into streams that the caller has opened. Throw what Chunky throws, and std::runtime_error when the stream
// doesn't take all.
void WriteSharedShader(ByteStream& stream, const Shader& shader);
bool WriteSharedShaderFinal(ByteStream& stream, const Shader& shader, uint32_t useDXTC);
// Into a file that holds more; whoever opened it asks its Flush at the end.
bool WriteSharedShaderFinal(Chunky& chunky, const Shader& shader, uint32_t useDXTC);

// A name without an alias lies under "GENERIC" for the generic form, under "DATA" for the final one; one with an alias
// takes the extension. The textures go into the inventory; the shader has the name that stands in the file and is
// nobody's yet. Null for a file that isn't there; a damaged one throws Chunky::Exception or ByteStream::Exception.
std::unique_ptr<Shader> LoadSharedShaderGeneric(const char* pName);
std::unique_ptr<Shader> LoadSharedShaderFinal(const char* pName);
std::unique_ptr<Shader> ReadSharedShaderGeneric(ByteStream& stream);
std::unique_ptr<Shader> ReadSharedShaderFinal(ByteStream& stream);

} // namespace ra
