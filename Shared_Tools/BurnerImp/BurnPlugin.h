#pragma once

#include "Shared_Tools/BurnerImp/BurnParams.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

class ByteStream;

// A file that is burned. While that happens, its project's folders are mapped to GENERIC and DATA.
struct BurnSource {
    std::string file;        // full name
    std::string relative;    // below the project's generic folder
    std::string alias;       // the same as a path below GENERIC
    std::string finalFolder; // the project's own, where what is written under DATA goes
};

// Makes one kind of final file of one kind of generic file. It is told of all that it has to write ahead of that, so
// that the outputs can be looked at and opened first.
class BurnPlugin {
public:
    virtual ~BurnPlugin() = default;

    // The name in the scripts.
    virtual const char* GetName() const = 0;
    // Of what it takes, with its point; null for anything.
    virtual const char* GetSourceExtension() const = 0;
    // Of each file that it writes for this source, with their points. An empty one is the source's own.
    virtual std::vector<std::string> GetOutputExtensions(const BurnSource& source) const = 0;
    // Full names of what it reads besides, as far as that exists.
    virtual std::vector<std::string> GetSideFiles(const BurnSource& source) const = 0;
    virtual uint32_t GetKnownParams() const = 0; // bits

    // Writes the outputs, one stream for each extension. Throws a std::exception with the reason.
    virtual void Burn(const BurnSource& source, const BurnParams& params,
                      std::span<ByteStream* const> outputs) const = 0;
};

// All there are, in the order in which they are named to people.
std::span<const BurnPlugin* const> GetBurnPlugins();
// Without regard to case; null for an unknown one.
const BurnPlugin* FindBurnPlugin(const std::string& name);

const BurnPlugin& GetModelPlugin();
const BurnPlugin& GetShaderPlugin();
const BurnPlugin& GetPatternPlugin();
const BurnPlugin& GetCopyPlugin();
