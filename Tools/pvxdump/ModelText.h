#pragma once

#include <string>

#include "Tools/pvxdump/ModelContent.h"

// For people: one table for each kind of thing.
void PrintModel(std::string& out, const ModelContent& content);
// A shader in a file of its own.
void PrintShaderFile(std::string& out, const ModelContent& content);
// A texture in a file of its own.
void PrintTextureFile(std::string& out, const TextureContent& texture);
// How many chunks of which id aren't decoded.
void PrintUndecoded(std::string& out, const UndecodedChunks& chunks);
