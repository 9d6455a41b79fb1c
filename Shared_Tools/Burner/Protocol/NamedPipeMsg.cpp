#include "Shared_Tools/Burner/Protocol/NamedPipeMsg.h"

#include "Shared/PC/Win32Util/NamedPipe.h"

namespace {

constexpr uint32_t s_PieceSize = 1024;

bool ReadRest(NamedPipe& pipe, std::vector<uint8_t>& bytes) {
    for (bool more = true; more;) {
        uint8_t temp[s_PieceSize];
        uint32_t nRead = 0;
        if (bytes.size() >= NamedPipeMsg::s_MaxMessageSize || !pipe.Read(temp, sizeof temp, nRead, more))
            return false;
        dbAssert(!more || nRead == sizeof(temp));
        bytes.insert(bytes.end(), temp, temp + nRead);
    }
    return true;
}

} // namespace

namespace NamedPipeMsg {

bool SendStream(NamedPipe& pipe, RamStream& stream) { return pipe.Write(stream.GetBuffer(), stream.GetLength()); }

bool ReadMsg(NamedPipe& pipe, NamedPipeRawMsg& raw) {
    raw = {};
    uint32_t type = 0;
    uint32_t nRead = 0;
    bool more = false;
    if (!pipe.Read(&type, sizeof type, nRead, more) || nRead < sizeof type)
        return false;
    std::vector<uint8_t> bytes;
    if (more && !ReadRest(pipe, bytes))
        return false;
    raw = NamedPipeRawMsg(type, std::move(bytes));
    return true;
}

} // namespace NamedPipeMsg
