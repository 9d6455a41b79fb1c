#include <cstdio>
#include <exception>
#include <string>

#include <CLI/CLI.hpp>

#include "Shared/Cross/Debug/CrashFilter.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHDRaw.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Tools/pvxdump/Dump.h"
#include "Tools/pvxdump/GameLoad.h"
#include "Tools/pvxdump/GameText.h"

namespace {

constexpr int s_StatusFault = 2;

int Fail(const std::string& file, const std::string& reason) {
    std::fprintf(stderr, "%s: %s\n", file.c_str(), reason.c_str());
    return s_StatusFault;
}

int Print(const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        return Fail("standard output", "can't be written to");
    return 0;
}

int RunDump(const std::string& file, const std::string& path, const DumpOptions& options) {
    const std::unique_ptr<ByteStream> pStream = FilePathHDRaw(true).Open(path.c_str(), ByteStream::Mode_Read);
    if (!pStream)
        return Fail(file, "can't be opened: " + OSFile::LastErrorText());
    return Print(DumpFile(*pStream, file, options));
}

int RunLoad(const std::string& file, const std::string& path) {
    if (!FilePathUtil::HasExtension(path.c_str(), "obm"))
        return Fail(file, "isn't a model that the game loads; --load takes an .obm, which a burn writes");
    const GameLoad load(Pipeline::GetFullPath(path.c_str()));
    std::string text = file + ": ";
    PrintLoaded(text, load);
    return Print(text);
}

int Run(const std::string& file, const DumpOptions& options, bool loads) {
    const std::string path = OSFile::FromNative(file);
    const uint32_t attributes = path.empty() ? 0 : OSFile::FileAttr(path.c_str());
    if (attributes == 0)
        return Fail(file, "there is no such file");
    if ((attributes & OSFile::F_ATTRIBUTE_DIRECTORY) != 0)
        return Fail(file, "is a folder; a file is wanted");
    return loads ? RunLoad(file, path) : RunDump(file, path, options);
}

} // namespace

int main(int argc, char** argv) {
    dbInstallCrashFilter();
    CLI::App app("Prints what a file of the pipeline holds: models and their motion files at every level, shaders, "
                 "textures, patterns, saved scripts.",
                 "pvxdump");
    std::string file;
    DumpOptions options;
    bool loads = false;
    bool breaksOnAssert = false;
    app.add_option("FILE", file, "The file to read.")->required();
    CLI::Option* pJson = app.add_flag("--json", options.json, "As JSON, with all there is.");
    CLI::Option* pChunks = app.add_flag("--chunks", options.chunks, "The tree of chunks, whatever they mean.");
    app.add_flag("--vertices", options.vertices, "In JSON: vertices and indices too.")->needs(pJson)->excludes(pChunks);
    app.add_flag("--keys", options.keys, "In JSON: all keys of the animations too.")->needs(pJson)->excludes(pChunks);
    CLI::Option* pTextures =
        app.add_option("--textures", options.texturesFolder,
                       "Write every texture into this folder too: as TGA, or DDS where it is compressed.")
            ->type_name("DIR")
            ->excludes(pChunks);
    app.add_flag("--load", loads,
                 "Load a final model, .obm, as the game does, with its shaders, textures and the models that it "
                 "refers to, and sum up what came, and what is missing. It lies in a project's final folder.")
        ->excludes(pJson)
        ->excludes(pChunks)
        ->excludes(pTextures);
    app.add_flag("--break-on-assert", breaksOnAssert, "Stop in the debugger where an assertion fails.");
    // The crash filter looks for them in the whole command line; here they only have to be known.
    for (const char* pSwitch : {"--nodbg", "--notrace", "--noreport", "--notrap"})
        app.add_flag(pSwitch)->group("");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        return Fail("pvxdump", std::string(error.what()) + "; pvxdump --help tells more");
    }
    dbSetThrowOnAssert(!breaksOnAssert);
    try {
        return Run(file, options, loads);
    } catch (const std::exception& exception) {
        return Fail(file, exception.what());
    }
}
