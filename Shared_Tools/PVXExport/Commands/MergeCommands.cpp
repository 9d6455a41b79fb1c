// Merges an exported model and its animations into one model file, and writes and burns what the model shares:
//
//     ombl_animergeFlags true false                                          whether the model is merged, and whether
//                                                                            textures and patterns are written: true
//     ombl_animerge "Z:\\proj\\gen\\x.pvx" "Z:\\proj\\int\\ref.pvx" #("Z:\\proj\\int\\run.pvx")
//                                                                            true when all was done
//
// The animations may stand in an array or one by one. What goes wrong is a line on the listener, and false; the
// services are then still up, unless it was an exception, and ombl_burner_reset takes them down.

#include <span>

#include "Host/Sdk/Listener.h"
#include "Host/Sdk/Primitive.h"
#include "Shared/Cross/Debug/db.h"
#include "Shared_Tools/PVXExport/Commands/LocalBurnQuestion.h"
#include "Shared_Tools/PVXExport/Merge/animerge.h"

namespace {

constexpr int s_LeastArguments = 2; // to know where the log and the pipeline configuration are

Value Usage(const char* pText) {
    PutListenerText(pText);
    return Value(false);
}

std::vector<std::string> TakeAnimFiles(std::span<const Value> arguments) {
    if (!arguments.empty() && arguments[0].IsArray())
        arguments = arguments[0].ToArray();
    std::vector<std::string> files;
    files.reserve(arguments.size());
    for (const Value& value : arguments)
        files.push_back(value.ToText());
    return files;
}

Value MergeFlags(const Value* pArguments, int count) {
    if (count < 2)
        return Usage("Ani-merge options : usage 'Ani-merge <export model flag> <export textures flag>'\n");
    GetAniMergeFlags() = {.exportModel = pArguments[0].ToBool(), .exportTextures = pArguments[1].ToBool()};
    return Value(true);
}

// Errors of the script language pass the merge's guard by, so they come ahead of its start.
Value Merge(const Value* pArguments, int count) {
    dbAssertText(pArguments || count == 0, "arguments");
    if (!pArguments || count < s_LeastArguments)
        return Usage("Ani-merge : usage 'Ani-merge <merge file> <model file> <anim file(s)>* '\n");
    const std::span<const Value> arguments(pArguments, static_cast<size_t>(count));
    const AniMergeArguments merge{.count = count,
                                  .mergeFile = arguments[0].ToText(),
                                  .modelFile = arguments[1].ToText(),
                                  .animFiles = GetAniMergeFlags().exportModel ? TakeAnimFiles(arguments.subspan(2))
                                                                              : std::vector<std::string>()};
    LocalBurnQuestion::Install();
    return Value(AniMerge(merge, GetAniMergeFlags()));
}

const Primitive s_MergeFlags("ombl_animergeFlags", MergeFlags);
const Primitive s_Merge("ombl_animerge", Merge);

} // namespace
