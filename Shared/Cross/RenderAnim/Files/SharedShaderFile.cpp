#include "Shared/Cross/RenderAnim/Files/SharedShaderFile.h"

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/Chunks/SaveFile.h"
#include "Shared/Cross/RenderAnim/Chunks/ShaderChunk.h"
#include "Shared/Cross/RenderAnim/Chunks/TextureChunk.h"
#include "Shared/Cross/RenderAnim/Files/SharedShaderLayout.h"
#include "Shared/Cross/RenderAnim/Final/FinalShaderChunk.h"
#include "Shared/Cross/RenderAnim/Final/FinalTextureChunk.h"
#include "Shared/Cross/RenderAnim/Shader.h"
#include "Shared/Cross/RenderAnim/Texture.h"

namespace ra {

namespace {

constexpr char s_Extension[] = ".qsh";

std::vector<const Texture*> TexturesOf(const Shader& shader) {
    return CollectTextures(std::array<const Shader*, 1>{&shader});
}

void FlushFile(ByteStream& stream) {
    if (!stream.Flush())
        throw std::runtime_error("Unable to write to file!");
}

// Shaders' names may hold points, so that only a file's own extension counts as one.
std::string MakePath(const char* pName, const char* pAlias) {
    std::string path = pName;
    if (FilePathUtil::HasAlias(pName))
        FilePathUtil::SetExtension(path, s_Extension);
    else
        path = std::string(pAlias) + ":" + pName + (FilePathUtil::HasExtension(pName, "qsh") ? "" : s_Extension);
    return path;
}

using ReadStream = std::unique_ptr<Shader> (*)(ByteStream& stream);

std::unique_ptr<Shader> LoadFile(const char* pName, const char* pAlias, ReadStream pRead) {
    dbPrintf("SHADER USAGE -- Loading shared shader '%s'...", pName);
    const std::string path = MakePath(pName, pAlias);
    const std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(path.c_str(), ByteStream::Mode_Read);
    try {
        return pStream ? pRead(*pStream) : nullptr;
    } catch (const std::exception& exception) {
        // Whoever reports it has asked for a model and knows only that one's file.
        throw Chunky::Exception(ChunkyError_BadChunk, path + ": " + exception.what());
    }
}

std::unique_ptr<Shader> LoadGenericShader(Chunky& chunky) { return MakeShader(ReadShaderRecord(chunky)); }

std::unique_ptr<Texture> LoadGenericTexture(Chunky& chunky) { return TextureLoadGeneric(chunky); }

std::unique_ptr<Texture> LoadFinalTexture(Chunky& chunky) { return TextureLoadFinal(chunky); }

// The two forms differ in how textures lie and in what is logged.
std::unique_ptr<Shader> ReadFile(ByteStream& stream, std::unique_ptr<Texture> (*pReadTexture)(Chunky& chunky),
                                 std::unique_ptr<Shader> (*pReadShader)(Chunky& chunky)) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    chunky.EnterFolder(s_SharedShaderFileChunk, s_SharedShaderFileVersion);
    std::vector<TextureRef> textures; // held until the shader has them
    std::unique_ptr<Shader> pShader;
    for (ChunkInfo child; chunky.NextChunk(child);) {
        if (child.kind != ChunkKind_Folder)
            continue;
        if (child.id == s_TextureChunk)
            textures.push_back(AddTexture(pReadTexture(chunky)));
        else if (child.id == s_ShaderChunk && !pShader)
            pShader = pReadShader(chunky);
    }
    chunky.EndChunk();
    if (!pShader)
        throw Chunky::Exception(ChunkyError_MissingChunk, "Missing Chunk Type! (shader of a shader file)");
    return pShader;
}

} // namespace

void WriteSharedShader(ByteStream& stream, const Shader& shader) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    PayloadWriter writer;
    chunky.BeginFolder(s_SharedShaderFileChunk, s_SharedShaderFileVersion, shader.GetName());
    for (const Texture* pTexture : TexturesOf(shader))
        WriteTexture(chunky, writer, *pTexture);
    WriteShader(chunky, writer, shader);
    chunky.EndChunk();
    FlushFile(stream);
}

bool WriteSharedShaderFinal(Chunky& chunky, const Shader& shader, uint32_t useDXTC) {
    PayloadWriter writer;
    bool complete = true;
    chunky.BeginFolder(s_SharedShaderFileChunk, s_SharedShaderFileVersion, shader.GetName());
    for (const Texture* pTexture : TexturesOf(shader))
        complete &= WriteFinalTexture(chunky, writer, *pTexture, useDXTC);
    WriteFinalShader(chunky, writer, shader);
    chunky.EndChunk();
    return complete;
}

bool WriteSharedShaderFinal(ByteStream& stream, const Shader& shader, uint32_t useDXTC) {
    Chunky chunky{ByteStreamAdapter(&stream)};
    const bool complete = WriteSharedShaderFinal(chunky, shader, useDXTC);
    FlushFile(stream);
    return complete;
}

bool SaveSharedShader(const char* pPath, const Shader& shader) {
    return SaveFile(pPath, [&](ByteStream& stream) { WriteSharedShader(stream, shader); });
}

bool SaveSharedShaderFinal(const char* pPath, const Shader& shader, uint32_t useDXTC) {
    bool complete = true;
    const auto write = [&](ByteStream& stream) { complete = WriteSharedShaderFinal(stream, shader, useDXTC); };
    return SaveFile(pPath, write) && complete;
}

std::unique_ptr<Shader> ReadSharedShaderGeneric(ByteStream& stream) {
    return ReadFile(stream, LoadGenericTexture, LoadGenericShader);
}

std::unique_ptr<Shader> ReadSharedShaderFinal(ByteStream& stream) {
    return ReadFile(stream, LoadFinalTexture, ShaderLoadFinal);
}

std::unique_ptr<Shader> LoadSharedShaderGeneric(const char* pName) {
    return LoadFile(pName, "GENERIC", ReadSharedShaderGeneric);
}

std::unique_ptr<Shader> LoadSharedShaderFinal(const char* pName) {
    return LoadFile(pName, "DATA", ReadSharedShaderFinal);
}

} // namespace ra
