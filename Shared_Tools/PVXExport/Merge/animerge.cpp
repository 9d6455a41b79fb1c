#include "Shared_Tools/PVXExport/Merge/animerge.h"

#include <memory>
#include <optional>
#include <stdexcept>

#include "Host/Sdk/Listener.h"
#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathUtil.h"
#include "Shared/Cross/RenderAnim/Generic/GenericFile.h"
#include "Shared/Cross/RenderAnim/Intermediate/IntermediateFile.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/RenderModel.h"
#include "Shared/Cross/RenderAnim/Skeleton.h"
#include "Shared_Tools/PVXExport/Merge/BoneCheck.h"
#include "Shared_Tools/PVXExport/Merge/MergeServices.h"
#include "Shared_Tools/PVXExport/Merge/OmbrelSharedShader.h"
#include "Shared_Tools/PVXExport/Merge/mergeburn.h"

namespace {

constexpr int s_LeastArguments = 3;
constexpr int s_Succeeded = 0;
constexpr int s_Failed = -1;

void Print(const std::string& text) { PutListenerText(text.c_str()); }

std::string ToToolPath(const std::string& file) { return "TOOL:" + file; }

void LogFault(const std::string& path, const std::exception& exception) {
    dbPrintf("RENDER ANIM -- %s: %s", path.c_str(), exception.what());
}

// The model's resources go into a frame of their own, so that those of its name can't be mistaken for another's.
class FrameScope {
public:
    explicit FrameScope(const std::string& modelPath) {
        std::string name;
        RenderModel::GetTypeInfo().TranslateName(name, modelPath.c_str());
        Inv::PushFrame(name.c_str());
    }
    ~FrameScope() { Inv::PopFrame(); }
    FrameScope(const FrameScope&) = delete;
    FrameScope& operator=(const FrameScope&) = delete;
};

std::unique_ptr<RenderModel> LoadModel(const std::string& modelPath) {
    const FrameScope frame(modelPath);
    try {
        return ra::LoadIntermediate(modelPath.c_str());
    } catch (const std::exception& exception) {
        LogFault(modelPath, exception);
        return nullptr;
    }
}

// Only tells: a file that was merged is good, even if its skeleton, which no merge looks at, can't be read.
void CheckBones(const BoneCheck& check, const std::string& file) {
    try {
        const auto pStream = FilePath::OpenStream(ToToolPath(file).c_str(), ByteStream::Mode_Read);
        if (pStream)
            BoneCheck::Report(file, check.Compare(*pStream));
    } catch (const std::exception& exception) {
        dbWarningf("MERGE -- '%s': its bones can't be held against the model's: %s", file.c_str(), exception.what());
    }
}

// False at the first file that can't be merged, which is logged.
bool MergeAnims(RenderModel& model, const std::vector<std::string>& files) {
    std::optional<BoneCheck> check;
    if (const Skeleton* pSkeleton = model.GetSkeleton())
        check.emplace(*pSkeleton);
    size_t number = 0;
    for (const std::string& file : files) {
        const std::string path = ToToolPath(file);
        LogMergeStep("animation file " + std::to_string(++number) + " of " + std::to_string(files.size()), file);
        try {
            ra::AppendIntermediateAnims(model, path.c_str());
        } catch (const std::exception& exception) {
            LogFault(path, exception);
            return false;
        }
        if (check)
            CheckBones(*check, file);
    }
    return true;
}

bool BuildModel(RenderModel& model, const std::vector<std::string>& animFiles) {
    const bool hasSkeleton = model.GetSkeleton() != nullptr;
    if (MergeAnims(model, animFiles))
        return true;
    if (!hasSkeleton)
        Print("Merge: Trying to merge animations but ref model doesn't have a skeleton");
    Print("Merge: Unable to build the intermediate model (Data Intermediate)!\n");
    return false;
}

bool SaveModel(const RenderModel& model, const std::string& mergePath) {
    if (ra::SaveGeneric(model, mergePath.c_str()))
        return true;
    Print(std::string("Merge: Unable to save the model '") + model.GetName() +
          "'\n.  Please make sure no one else has it checked-out in P4 (Data Generic / Data Final)!\n");
    return false;
}

void NameAfterFile(RenderModel& model, const std::string& path) {
    std::string title;
    FilePathUtil::CopyFileTitle(title, path.c_str());
    model.SetName(title.c_str());
}

} // namespace

AniMergeFlags& GetAniMergeFlags() {
    static AniMergeFlags s_Flags;
    return s_Flags;
}

bool AniMergeRun(const AniMergeArguments& arguments, const AniMergeFlags& flags) {
    if (arguments.count < s_LeastArguments) {
        Print("Ani-merge : usage 'Ani-merge <merge file> <model file> <anim file(s)>* '\n");
        return false;
    }
    ra::SetGenericLoad(true);
    const std::unique_ptr<RenderModel> pModel = LoadModel(ToToolPath(arguments.modelFile));
    if (!pModel) {
        Print("Merge: Unable to load file '" + arguments.modelFile + "'!\n");
        return false;
    }
    OmbrelSharedShader::MarkSharedTextures(*pModel);
    if (flags.exportModel && !BuildModel(*pModel, arguments.animFiles))
        return false;
    MakeDirectoryPath(arguments.mergeFile.c_str());
    const std::string mergePath = ToToolPath(arguments.mergeFile);
    NameAfterFile(*pModel, mergePath);
    if (flags.exportModel && !SaveModel(*pModel, mergePath))
        return false;
    return !flags.exportTextures || OmbrelSharedShader::ExportSharedTextures(mergePath.c_str(), *pModel);
}

bool AniMerge(const AniMergeArguments& arguments, const AniMergeFlags& flags) {
    try {
        if (!AniMergeStartup(arguments.modelFile.c_str()) || !AniMergeRun(arguments, flags))
            return false;
        AniMergeShutdown(s_Succeeded);
        return true;
    } catch (const std::exception& exception) {
        PutListenerText(exception.what());
        AniMergeShutdown(s_Failed);
        return false;
    }
}
