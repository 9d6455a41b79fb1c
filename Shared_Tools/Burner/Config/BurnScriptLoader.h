#pragma once

#include "Shared_Tools/Burner/Messages/BurnerMessage.h"

class BurnerConfig;
class ByteStream;

// The module of Scripts, loaded at the first call. Each does what it tells there; all are false, which is logged, when
// it can't be loaded.
namespace BurnScripts {

bool Read(ByteStream& stream, bool isBase, BurnerConfig& config, BurnerMessageList* pMessages);
bool Write(const BurnerConfig& config, ByteStream& stream);
bool CanWrite(const BurnerConfig& config);

} // namespace BurnScripts
