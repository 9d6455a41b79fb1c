#pragma once

#include "Shared_Tools/Burner/Messages/BurnerMessage.h"
