#include "Shared_Tools/BurnerImp/BurnPlugin.h"

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/TeamColour/Pattern.h"
#include "Shared/Cross/TeamColour/PatternLoad.h"
#include "Shared_Tools/BurnerImp/BurnInfo.h"

#include <memory>
#include <stdexcept>

namespace {

// Patterns have one form alone, which old files get by it.
class PatternPlugin : public BurnPlugin {
public:
    const char* GetName() const override { return "pattern"; }
    const char* GetSourceExtension() const override { return ".otp"; }
    std::vector<std::string> GetOutputExtensions(const BurnSource&) const override { return {".otp"}; }
    std::vector<std::string> GetSideFiles(const BurnSource&) const override { return {}; }
    uint32_t GetKnownParams() const override { return BurnParam_BurnInfo; }

    void Burn(const BurnSource& source, const BurnParams& params, std::span<ByteStream* const> outputs) const override {
        const std::unique_ptr<ByteStream> pStream = FilePath::OpenStream(source.alias.c_str(), ByteStream::Mode_Read);
        if (!pStream)
            throw std::runtime_error("can't be opened");
        Pattern pattern;
        PatternLoad::Read(*pStream, pattern);
        Chunky chunky{ByteStreamAdapter(outputs[0])};
        if (params.burnInfo)
            WriteBurnInfo(chunky, source);
        PatternLoad::Write(chunky, pattern);
    }
};

} // namespace

const BurnPlugin& GetPatternPlugin() {
    static const PatternPlugin s_Plugin;
    return s_Plugin;
}
