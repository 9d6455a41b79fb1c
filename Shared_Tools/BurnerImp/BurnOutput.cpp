#include "Shared_Tools/BurnerImp/BurnOutput.h"

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/Cross/RevControlAPI/RevControlAPI.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Shared_Tools/BurnerImp/BurnPlugin.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace {

[[noreturn]] void Fail(const std::string& text) { throw std::runtime_error(text); }

std::string GetFullName(const std::string& output, FilePath::Mode mode) {
    std::string name = output;
    return FilePath::GetFullName(name, mode) ? name : std::string();
}

// Where it would be written, without a folder being made for it as there is for a name to write to.
std::string FindOutput(const BurnSource& source, const std::string& output) {
    std::string alias;
    std::string path;
    if (FilePathUtil::SplitAlias(output.c_str(), alias, path) && alias == "DATA")
        return source.finalFolder + "\\" + path;
    return GetFullName(output, ByteStream::Mode_Write);
}

} // namespace

std::string MakeOutputPath(const BurnSource& source, const std::string& destination, const std::string& extension) {
    std::string path = destination;
    if (!FilePathUtil::HasAlias(path.c_str()))
        Fail("destination '" + destination + "' is no alias path; it reads like DATA: or DATA:art");
    if (!FilePath::HasAlias(path.c_str()))
        Fail("nothing is mapped to the alias of '" + destination + "'; DATA is the project's final folder");
    if (!path.ends_with(':') && !path.ends_with('\\') && !path.ends_with('/'))
        path += '\\';
    path += source.relative;
    if (path.size() >= FilePath::MAXPATH || !FilePathUtil::NormalizeAliasPath(path) ||
        (!extension.empty() && !FilePathUtil::SetExtension(path, extension.c_str())))
        Fail("the output's path '" + path + "' is too long");
    if (path.find(":..\\") != path.npos || path.find("\\..\\") != path.npos)
        Fail("destination '" + destination + "' leads out of its alias");
    return path;
}

int64_t GetNewestTime(const std::vector<std::string>& fullNames) {
    int64_t newest = 0;
    for (const std::string& name : fullNames) {
        const int64_t time = OSFile::GetWriteTime(name.c_str());
        newest = std::max(newest, time != 0 ? time : std::numeric_limits<int64_t>::max());
    }
    return newest;
}

bool AreOutputsNewer(const BurnSource& source, const std::vector<std::string>& outputs, int64_t time) {
    return std::ranges::all_of(outputs, [&](const std::string& output) {
        const std::string name = FindOutput(source, output);
        return (OSFile::FileAttr(name.c_str()) & OSFile::F_ATTRIBUTE_FILE) != 0 &&
               OSFile::GetWriteTime(name.c_str()) > time;
    });
}

OutputControl::OutputControl(int32_t changelist) : m_Changelist(changelist) {}

OutputControl::~OutputControl() = default;

bool OutputControl::Open(const std::string& output) {
    if (!m_IsConnected) {
        m_IsConnected = true;
        std::string port;
        if (Pipeline::Get()->GetString("p4", "RevControlPort", port))
            m_pControl = RevControlAPI::Create(port.c_str(), RevControlAPI::Type_P4OrLocal);
    }
    const std::string name = GetFullName(output, ByteStream::Mode_Write);
    if (name.empty())
        Fail(output + " has no place to be written to");
    if (!m_pControl)
        Fail(output +
             " can't be opened: there is no revision control; see 'RevControlPort' under [p4] in pipeline.ini");
    OSFile::MakeFolders(name.c_str());
    const RevControlAPI::OpenResult result = m_pControl->OpenOrAdd(name.c_str(), m_Changelist);
    if (result == RevControlAPI::Open_Failed) {
        const std::string reason = m_pControl->GetLastError();
        Fail(output + " can't be opened in changelist " + std::to_string(m_Changelist) + ": " +
             (reason.empty() ? "there is no server, so it has to be a file that can be written" : reason));
    }
    return result != RevControlAPI::Open_OtherList;
}

OutputFiles::OutputFiles(const std::vector<std::string>& outputs) : m_Names(outputs) {
    for (const std::string& output : outputs) {
        m_Files.push_back(FilePath::ReplaceFile(output.c_str()));
        if (!m_Files.back())
            Fail(output + " can't be written: " + OSFile::LastErrorText());
        m_Streams.push_back(&m_Files.back()->GetStream());
    }
}

void OutputFiles::Finish() {
    for (ByteStream* pStream : m_Streams)
        if (!pStream->Flush())
            Fail(m_Names[static_cast<size_t>(&pStream - m_Streams.data())] + " can't be written");
    for (size_t i = 0; i < m_Files.size(); ++i)
        if (!m_Files[i]->Finish())
            Fail(m_Names[i] + " can't be written");
}
