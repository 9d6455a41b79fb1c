#include "Tests/Fuzz/Burner/MessageInputs.h"

#include "Shared_Tools/Burner/Protocol/BurnerMsg.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

namespace {

using Bytes = std::vector<uint8_t>;

template <class T>
Bytes BytesOf(const T& msg) {
    RamStream stream;
    if (!NamedPipeMsg::BuildMsg(stream, msg))
        return {};
    return {stream.GetBuffer(), stream.GetBuffer() + stream.GetLength()};
}

NamedPipeRawMsg RawOf(std::span<const uint8_t> input) {
    uint32_t type = 0;
    std::memcpy(&type, input.data(), sizeof type);
    return {type, {input.begin() + sizeof type, input.end()}};
}

[[noreturn]] void Stop(const char* pReason) {
    std::fprintf(stderr, "%s\n", pReason);
    std::abort();
}

// Fixed texts may have anything behind their end, so it is the second writing that has to be the first.
template <class T>
bool Feed(const NamedPipeRawMsg& raw) {
    T msg;
    if (!NamedPipeMsg::ParseMsg(raw, msg))
        return false;
    const Bytes bytes = BytesOf(msg);
    T again;
    if (bytes.empty() || !NamedPipeMsg::ParseMsg(RawOf(bytes), again) || BytesOf(again) != bytes)
        Stop("a message that was read changed when it was written and read again");
    return true;
}

template <class... Types>
bool FeedAny(const NamedPipeRawMsg& raw) {
    return ((NamedPipeMsg::IsMsg<Types>(raw) && Feed<Types>(raw)) || ...);
}

} // namespace

std::vector<Bytes> MakeMessageSeeds(MessageSide side) {
    const BurnerMessageList messages{{"one", 0}, {"", 2}, {std::string(40, 'x'), 1}};
    if (side == MessageSide::Tools)
        return {BytesOf(BurnerReadyMsg{.version = 1}), BytesOf(BurnerErrorMsg{.messages = messages}),
                BytesOf(BurnerUpdateMsg{.messages = messages}),
                BytesOf(BurnerResultMsg{.result = 1, .messages = messages})};
    return {BytesOf(BurnerSetupMsg{.pipelinePath = "Z:\\pipeline.ini"}),
            BytesOf(BurnRequestMsg{.changelist = 3, .directory = "Z:\\gen", .pattern = ".*"}),
            BytesOf(BurnFileListMsg{.changelist = 3, .files = {"Z:\\gen\\a.pvx", "", "b"}}),
            BytesOf(BurnUpdateFileListMsg{.changelist = 3, .files = {"Z:\\gen\\a.pvx"}})};
}

bool FeedMessageReader(MessageSide side, std::span<const uint8_t> input) {
    // Blocks of the wrong size fail an assertion, which is the answer to them.
    dbSetThrowOnAssert(true);
    const dbNoThrowScope stepOver;
    if (input.size() < sizeof(uint32_t))
        return false;
    const NamedPipeRawMsg raw = RawOf(input);
    try {
        if (side == MessageSide::Tools)
            return FeedAny<BurnerReadyMsg, BurnerErrorMsg, BurnerUpdateMsg, BurnerResultMsg>(raw);
        return FeedAny<BurnerSetupMsg, BurnRequestMsg, BurnFileListMsg, BurnUpdateFileListMsg>(raw);
    } catch (const ByteStream::Exception&) {
        return false;
    } catch (const std::exception& exception) {
        Stop(exception.what());
    }
}
