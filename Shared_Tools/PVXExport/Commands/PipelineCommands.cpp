// Where a file of the source tree has its place in the project's other trees:
//
//     ombl_pipeline_sourcetointermediate "Z:\proj\src\art\x.glb"   "Z:\proj\int\art\x.glb"
//
// The pipeline configuration is the one of the file, looked for from its folder upwards in each call. The answer is
// undefined when there is none, or the file lies in no project's source folder.

#include "Host/Sdk/Primitive.h"
#include "Shared/Cross/Pipeline/Pipeline.h"
#include "Shared_Tools/PVXExport/PVXFilename.h"

namespace {

// As a command names itself in the errors about its arguments.
struct CommandTexts {
    const char* pCount;
    const char* pType;
};

Value MapSource(const Value* pArguments, int count, const CommandTexts& texts, Pipeline::DataKind kind) {
    CheckArgCount(texts.pCount, 1, count);
    CheckArgIsString(pArguments[0], texts.pType);
    const std::string source = Pipeline::GetFullPath(pArguments[0].ToText().c_str());
    std::string target;
    return PVXFilename::MapToKind(target, source.c_str(), kind, source.c_str()) ? Value(std::move(target)) : Value();
}

Value SourceToIntermediate(const Value* pArguments, int count) {
    constexpr CommandTexts texts{.pCount = "ombl_pipeline_sourcetointermediate",
                                 .pType = "ombl_pipeline_sourcetointermediate source_filename"};
    return MapSource(pArguments, count, texts, Pipeline::Kind_Intermediate);
}

Value SourceToGeneric(const Value* pArguments, int count) {
    constexpr CommandTexts texts{.pCount = "ombl_pipeline_sourcetogeneric",
                                 .pType = "ombl_pipeline_sourcetogeneric source_filename"};
    return MapSource(pArguments, count, texts, Pipeline::Kind_Generic);
}

Value SourceToFinal(const Value* pArguments, int count) {
    // Its name of old, by which scripts tell this error.
    constexpr CommandTexts texts{.pCount = "ombl_pipeline_sourcetodestination",
                                 .pType = "ombl_pipeline_sourcetofinal source_filename"};
    return MapSource(pArguments, count, texts, Pipeline::Kind_Final);
}

const Primitive s_SourceToIntermediate("ombl_pipeline_sourcetointermediate", SourceToIntermediate);
const Primitive s_SourceToGeneric("ombl_pipeline_sourcetogeneric", SourceToGeneric);
const Primitive s_SourceToFinal("ombl_pipeline_sourcetofinal", SourceToFinal);

} // namespace
