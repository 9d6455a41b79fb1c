#pragma once

// The model's own layout. A file of animations alone has nothing but "ANIM".
#include "Shared/Cross/RenderAnim/Chunks/ModelLayout.h"
