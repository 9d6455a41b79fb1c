#pragma once

#include <cstdint>
#include <memory>

#include "Shared/Cross/FileSystem/ByteStream.h"
#include "Shared/Cross/RenderAnim/Image/Image.h"

// The readers behind ImageLoad, one for each kind of picture file; each in its own source, with the layout of the file.
// The stream is at its start, and null for a file that couldn't be opened. The name is for messages. Null with a log
// line for whatever can't be read; sizes are held against the stream's length before memory is taken.

class JpegLibrary;

struct ImageReaderArgs {
    ByteStream* pStream = nullptr;
    const char* pName = "";
    uint32_t levelsToSkip = 0; // DDS alone has several
};

// Each sets the flags of ImageLoad when it succeeds.
std::unique_ptr<Image> ReadDds(const ImageReaderArgs& args, uint32_t& outFlags);
std::unique_ptr<Image> ReadJpeg(const ImageReaderArgs& args, uint32_t& outFlags);
std::unique_ptr<Image> ReadTga(const ImageReaderArgs& args, uint32_t& outFlags);
std::unique_ptr<Image> ReadBmp(const ImageReaderArgs& args, uint32_t& outFlags);
std::unique_ptr<Image> ReadBw(const ImageReaderArgs& args, uint32_t& outFlags);

// With the library given, which may be one that couldn't be loaded.
std::unique_ptr<Image> ReadJpeg(const ImageReaderArgs& args, uint32_t& outFlags, const JpegLibrary& library);
