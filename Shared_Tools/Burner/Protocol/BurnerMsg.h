#pragma once

#include "Shared_Tools/Burner/Messages/BurnerMessage.h"
#include "Shared_Tools/Burner/Protocol/NamedPipeMsg.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// What goes over the pipe between the tools and the burner. Each message is a uint32 type and a body; a message ends
// where the pipe's message ends. All numbers are 32-bit and little-endian. A string is a uint32 length of at most 1024
// and the characters; a fixed text has 260 bytes, is ended by a NUL within them and cut if it is longer; what stands
// behind the NUL means nothing.
//
//     BRSU  to the burner    text pipelinePath, uint32 setupValue
//     BRTB  to the tools     4 bytes
//     BERR  to the tools     message list
//     BRWC  to the burner    int32 changelist, text directory, text pattern, 4 bytes flags
//     BFLL  to the burner    int32 changelist, uint32 count, the strings
//     BUFL  to the burner    the same
//     BUPD  to the tools     message list
//     BRES  to the tools     int32 result, 1 byte, message list
//
// A message list is a uint32 count and for each message a uint32 kind and a string.
//
// The classes are plain records. Their Read answers false for bytes that aren't such a message, whatever they are, and
// takes no more memory than the bytes account for.

constexpr const char* s_BurnerPipeName = "BurnerPipe";
constexpr uint32_t s_BurnerMaxString = 1024;
constexpr size_t s_BurnerFixedText = 260;
constexpr uint32_t s_BurnerSetupValue = 8;

using BurnFlags = std::array<bool, 4>;

// The job is set up by the configuration that the tools use.
struct BurnerSetupMsg {
    static constexpr uint32_t MSG_TYPE = 0x42525355;

    std::string pipelinePath; // full path of the "pipeline.ini"
    uint32_t setupValue = s_BurnerSetupValue;

    bool Write(ByteStreamAdapter& stream) const;
    bool Read(const NamedPipeRawMsg& msg, ByteStreamAdapter& stream);
};

struct BurnerReadyMsg {
    static constexpr uint32_t MSG_TYPE = 0x42525442;

    uint32_t version = 0; // the burner's own; the tools don't look at it

    bool Write(ByteStreamAdapter& stream) const;
    bool Read(const NamedPipeRawMsg& msg, ByteStreamAdapter& stream);
};

// The two messages that hold a message list and nothing else.
template <uint32_t Type>
struct BurnerListMsg {
    static constexpr uint32_t MSG_TYPE = Type;

    BurnerMessageList messages;

    bool Write(ByteStreamAdapter& stream) const;
    bool Read(const NamedPipeRawMsg& msg, ByteStreamAdapter& stream);
};
using BurnerErrorMsg = BurnerListMsg<0x42455252>;
using BurnerUpdateMsg = BurnerListMsg<0x42555044>;

struct BurnRequestMsg {
    static constexpr uint32_t MSG_TYPE = 0x42525743;

    int32_t changelist = 0; // 0 for none
    std::string directory;  // absolute
    std::string pattern;    // regular expression of file names
    BurnFlags flags{};

    bool Write(ByteStreamAdapter& stream) const;
    bool Read(const NamedPipeRawMsg& msg, ByteStreamAdapter& stream);
};

// The two forms of a list of files.
template <uint32_t Type>
struct BurnListMsg {
    static constexpr uint32_t MSG_TYPE = Type;

    int32_t changelist = 0;
    std::vector<std::string> files;
    bool option = false; // the caller's; not written

    bool Write(ByteStreamAdapter& stream) const;
    bool Read(const NamedPipeRawMsg& msg, ByteStreamAdapter& stream);
};
using BurnFileListMsg = BurnListMsg<0x42464C4C>;
using BurnUpdateFileListMsg = BurnListMsg<0x4255464C>;

struct BurnerResultMsg {
    static constexpr uint32_t MSG_TYPE = 0x42524553;

    int32_t result = 0;
    bool ignored = false; // the tools don't look at it
    BurnerMessageList messages;

    bool Write(ByteStreamAdapter& stream) const;
    bool Read(const NamedPipeRawMsg& msg, ByteStreamAdapter& stream);
};
