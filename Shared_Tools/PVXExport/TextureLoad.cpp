#include "Shared_Tools/PVXExport/TextureLoad.h"

namespace TextureLoad {

TextureRef Load(const char*, bool) { return {}; }

} // namespace TextureLoad
