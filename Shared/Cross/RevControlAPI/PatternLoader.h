#pragma once

#include "Shared/Cross/RevControlAPI/Patterns/PatternMatcher.h"

// The matcher of Patterns, loaded when first asked for. Null, with a line in the log, when it can't be loaded.
PatternMatchFunction* LoadPatternMatcher();
