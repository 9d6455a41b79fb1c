#pragma once

#include "Shared_Tools/PVXExport/SharedTextureName.h"

class RenderModel;
class Shader;

// A texture that many models share lies with its shader in a file of its own, which has the texture's name; the shader
// bears that name too, and models refer to it by it.
namespace OmbrelSharedShader {

// By their names; a shader that isn't shared by its name isn't any more.
void MarkSharedTextures(RenderModel& model);

// Writes and burns the shader files of the model's shared textures, each once, and their team colour patterns. The
// merged file's alias path tells the project, in whose generic tree all of them lie. What was done before a failure
// stays done. False without a project, which is a mistake; otherwise throws as ExportSharedTexture does.
bool ExportSharedTextures(const char* pMergedPath, const RenderModel& model);

// One of them. Throws what MergeBurnWrite throws.
bool ExportSharedTexture(const char* pProject, Shader* pShader);

} // namespace OmbrelSharedShader
