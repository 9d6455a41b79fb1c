#pragma once

#include <string>

#include "Host/Sdk/Types.h"

class INode;

namespace PVXUtil {

// The handle under which the host has loaded this module; null before.
void SetDLLInstance(HINSTANCE handle);
HINSTANCE GetDLLInstance();

// A text of the module's resources, of at most 259 characters; null when there is none of that id. The next call
// overwrites it.
const char* GetString(unsigned id);

// True for ...REFERENCE\REF.PVX, case aside: the file that holds a model's meshes rather than a motion.
bool IsReferenceFile(const char* pName);

// The file's name without folder and extension. The file REF in a folder REFERENCE is called by the folder around that.
bool ModelNameFromPath(std::string& outName, const char* pFilePath);

// The model that an external reference comes from, as its data path without alias and extension, in small letters.
// False and empty for a node that is none, or whose file can't be mapped into the data tree.
bool ExternalModelName(INode* pNode, std::string& outName);

// Slashes and small letters.
void NormalisePath(std::string& newPath, const char* pOldPath);

// The name under which the inventory has a texture: its data path without alias and extension. Empty for a file outside
// every project. Always true.
bool TextureShortName(std::string& outName, const char* pInName);

} // namespace PVXUtil
