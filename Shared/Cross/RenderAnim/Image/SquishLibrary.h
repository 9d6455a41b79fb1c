#pragma once

#include <cstdint>
#include <string>

#include "Shared/PC/Module/SharedModule.h"

// The slow and thorough S3TC compressor, which is loaded by name, since few runs need it. Its operation on single
// blocks is the one used: that on pictures leaves threads behind, which a module that comes and goes can't have.
class SquishLibrary {
public:
    // Of the process; loaded when first asked for.
    static const SquishLibrary& Get();
    SquishLibrary();

    bool IsLoaded() const { return m_pCompress != nullptr; }
    // Why it isn't.
    const std::string& GetError() const { return m_Error; }
    // 16 pixels of red, green, blue, alpha into a block. Bit n of the mask says whether pixel n counts.
    void Compress(const uint8_t* pPixels, int mask, uint8_t* pBlock, int flags) const {
        m_pCompress(pPixels, mask, pBlock, flags, nullptr);
    }

private:
    SharedModule m_Module;
    std::string m_Error;
    void (*m_pCompress)(const unsigned char* pPixels, int mask, void* pBlock, int flags, float* pMetric) = nullptr;
};
