#pragma once

#include "Shared/Cross/Memory/MMAllocator.h"

// The memory of all that an animation is made of: streams and nodes are small and many.
using AnimStaticPool = MMNamedPool<"AnimStatic", MMPoolKind::Small>;
