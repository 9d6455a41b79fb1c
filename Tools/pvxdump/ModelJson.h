#pragma once

#include <nlohmann/json_fwd.hpp>

#include "Tools/pvxdump/ModelContent.h"

// For programs: everything that the file holds. Vertices and indices are there when the content was read with them:
// "positions", "normals" and "texcoords" as [x, y, ...] a vertex, "weights" as three floats and "boneIndices" as four
// numbers a vertex, and "indices" flat. The animations' keys are there if asked for; see AnimJson.h.
nlohmann::json ToJson(const ModelContent& content, bool withVertices, bool withKeys);
// A shader in a file of its own.
nlohmann::json ShaderFileToJson(const ModelContent& content);
// A texture in a file of its own.
nlohmann::json TextureFileToJson(const TextureContent& texture);
// How many chunks of which id aren't decoded.
nlohmann::json UndecodedToJson(const UndecodedChunks& chunks);
