#include "Shared_Tools/BurnerImp/BurnPlugin.h"

#include "Shared/Cross/FileSystem/ByteStream.h"
#include "Shared/PC/FileSystem/DiskFileStream.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <stdexcept>

namespace {

constexpr uint32_t s_PieceSize = 1u << 20;

// The same bytes under DATA. Nothing can say who burned it, so "burnInfo" is known and does nothing.
class CopyPlugin : public BurnPlugin {
public:
    const char* GetName() const override { return "copy"; }
    const char* GetSourceExtension() const override { return nullptr; }
    std::vector<std::string> GetOutputExtensions(const BurnSource&) const override { return {""}; }
    std::vector<std::string> GetSideFiles(const BurnSource&) const override { return {}; }
    uint32_t GetKnownParams() const override { return BurnParam_BurnInfo; }

    void Burn(const BurnSource& source, const BurnParams&, std::span<ByteStream* const> outputs) const override {
        const OSFile::Handle file = OSFile::Open(source.file.c_str(), OSFile::Open_Read, true, false);
        if (!file)
            throw std::runtime_error("can't be read: " + OSFile::LastErrorText());
        std::vector<uint8_t> piece(s_PieceSize);
        bool taken = true;
        for (uint32_t size; taken && (size = OSFile::Read(file, piece.data(), s_PieceSize)) > 0;)
            taken = outputs[0]->Write(piece.data(), size) == size;
        const uint64_t copied = OSFile::GetPos(file);
        const uint64_t whole = OSFile::GetSize(file);
        OSFile::Close(file);
        if (taken && copied > whole) // no operation failed that could give the reason
            throw std::runtime_error(
                "can't be copied: it got shorter while it was read; burn it again once it is whole");
        if (!taken || copied != whole)
            throw std::runtime_error("can't be copied: " + OSFile::LastErrorText());
    }
};

} // namespace

const BurnPlugin& GetCopyPlugin() {
    static const CopyPlugin s_Plugin;
    return s_Plugin;
}
