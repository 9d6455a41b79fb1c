#include "Shared/Cross/RenderAnim/Motion/Chunks/MotionChunks.h"
