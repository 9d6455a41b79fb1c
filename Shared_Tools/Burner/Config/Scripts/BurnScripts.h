#pragma once

#include "Shared_Tools/Burner/Messages/BurnerMessage.h"

class BurnerConfig;
class ByteStream;

// What the module of this folder offers. It is a module since it brings the script language along, which no program
// that has nothing to do with burn scripts should load.

// Reads a script: a base in place of what the configuration holds, any other onto it. The stream's name leads the
// messages. What the script has to say goes to the log and, unless they are null, to the messages as warnings; false
// ends the reading, and not all of it does.
using ReadBurnScriptFunction = bool(ByteStream& stream, bool isBase, BurnerConfig& config,
                                    BurnerMessageList* pMessages);
// Writes the parameters that aren't inherited as a script. False, which is logged, when the stream doesn't take it, or
// when a name or value would come back from the script as something else; nothing is written then.
using WriteBurnScriptFunction = bool(const BurnerConfig& config, ByteStream& stream);
// The second reason alone.
using CanWriteBurnScriptFunction = bool(const BurnerConfig& config);

constexpr char s_BurnScriptModule[] = "libBurnScripts.so";
constexpr char s_ReadBurnScript[] = "PvxReadBurnScript";
constexpr char s_WriteBurnScript[] = "PvxWriteBurnScript";
constexpr char s_CanWriteBurnScript[] = "PvxCanWriteBurnScript";
