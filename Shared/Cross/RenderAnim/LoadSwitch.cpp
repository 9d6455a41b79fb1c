#include "Shared/Cross/RenderAnim/LoadSwitch.h"

namespace ra {

namespace {

constinit bool s_genericLoad = false;

} // namespace

void SetGenericLoad(bool on) { s_genericLoad = on; }

bool IsGenericLoad() { return s_genericLoad; }

} // namespace ra
