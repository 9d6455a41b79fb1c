#include "Host/App/ScriptCommands.h"

#include "Host/App/BurnCommand.h"
#include "Host/App/MergeCommand.h"
#include "Host/App/ScriptText.h"
#include "Host/App/WarningCapture.h"
#include "Host/Sdk/Primitive.h"
#include "Shared/PC/FileSystem/OSFile.h"

#include <algorithm>

namespace {

bool IsSuccess(const Value& value) { return !value.IsUndefined() && !(value.IsBoolean() && !value.ToBool()); }

Value PathValue(const std::string& nativePath) { return Value(OSFile::FromNative(nativePath)); }

// Commands that come with another part of the module than the exporter.
void CheckRegistered(const char* pCommand, const char* pVerb) {
    if (!Primitive::Find(pCommand))
        throw HostError(1, std::string(pVerb) + ": this module has no command \"" + pCommand +
                               "\"; load one that can " + pVerb);
}

} // namespace

Value ValueFromWord(const std::string& word) {
    if (std::optional<Value> value = ParseScriptValue(word))
        return *value;
    if (word.starts_with('"') || word.starts_with("#("))
        throw HostError(2, "call: " + word + " is no value; end what is begun, and mind the shell's own quotes");
    return word.find('/') != std::string::npos ? PathValue(word) : Value(word);
}

Value ScriptCommands::Apply(const std::string& command, const std::vector<Value>& arguments) {
    const Primitive* pCommand = Primitive::Find(command);
    if (!pCommand)
        throw HostError(2, "there is no command \"" + command + "\"; pvxhost commands lists those that there are");
    try {
        const WarningCapture warnings;
        Value result = pCommand->Apply(arguments);
        m_Progress.Clear();
        m_Listener.EndLine();
        if (result.IsUndefined() && !warnings.GetLast().empty())
            m_Messages.Print(MessageKind::Note, std::string(pCommand->GetName()) + ": " + warnings.GetLast());
        return result;
    } catch (const ScriptError& error) {
        throw HostError(1, error.GetText());
    } catch (const char* pText) {
        // How a command ends past its own guard.
        m_Progress.Clear();
        m_Listener.EndLine();
        const std::string_view text = pText;
        throw HostError(1, std::string(text.substr(0, text.find_last_not_of('\n') + 1)));
    } catch (const std::exception& error) {
        throw HostError(1, std::string(pCommand->GetName()) + ": " + error.what());
    }
}

int ScriptCommands::List() const {
    const std::vector<const Primitive*> commands = Primitive::GetAll();
    if (commands.empty())
        m_Messages.Print(MessageKind::Note, "the module registers no script commands");
    for (const Primitive* pCommand : commands)
        std::fprintf(m_pOut, "%s\n", pCommand->GetName());
    return 0;
}

int ScriptCommands::Call(const CallArguments& arguments) {
    std::vector<Value> values;
    std::ranges::transform(arguments.arguments, std::back_inserter(values), ValueFromWord);
    const Value result = Apply(arguments.command, values);
    std::fprintf(m_pOut, "%s\n", result.Print().c_str());
    return IsSuccess(result) ? 0 : 1;
}

int ScriptCommands::Merge(const MergeArguments& arguments) {
    CheckRegistered("ombl_animerge", "merge");
    CheckMergeInputs(arguments);
    Apply("ombl_animergeFlags", {Value(!arguments.noModel), Value(!arguments.noTextures)});
    Value::Array animations;
    std::ranges::transform(arguments.animations, std::back_inserter(animations), PathValue);
    const MergeNotes notes(m_Progress);
    try {
        if (IsSuccess(Apply("ombl_animerge",
                            {PathValue(arguments.merged), PathValue(arguments.model), Value(std::move(animations))}))) {
            notes.PrintSummary(arguments, m_Messages);
            return 0;
        }
    } catch (const HostError&) {
        notes.PrintFailure(arguments, false, m_Messages);
        ResetServices();
        throw;
    }
    notes.PrintFailure(arguments, m_Listener.IsUnused(), m_Messages);
    ResetServices();
    return 1;
}

// What a merge that failed may have left up; without a complaint, since the failure has been told.
void ScriptCommands::ResetServices() {
    constexpr const char* pReset = "ombl_burner_reset";
    try {
        if (Primitive::Find(pReset))
            Apply(pReset, {});
    } catch (const HostError& error) {
        m_Messages.PrintDetail(error.what());
    }
}

int ScriptCommands::Burn(const BurnArguments& arguments) {
    CheckRegistered("ombl_burner", "burn");
    CheckBurnInput(arguments);
    const BurnLines lines;
    const bool good = IsSuccess(Apply("ombl_burner", {PathValue(arguments.file)}));
    lines.PrintSummary(arguments, good, m_Messages);
    return good ? 0 : 1;
}

bool ScriptCommands::RunLine(const std::string& line) {
    const std::optional<ScriptCall> call = ParseScriptLine(line);
    if (!call)
        return true;
    const Value result = Apply(call->command, call->arguments);
    std::fprintf(m_pOut, "%s\n", result.Print().c_str());
    std::fflush(m_pOut);
    return IsSuccess(result);
}

int ScriptCommands::Run(std::istream& in, const std::string& name, bool interactive) {
    int status = 0;
    std::string line;
    for (size_t number = 1; std::getline(in, line); ++number) {
        try {
            if (!RunLine(line))
                status = 1;
            continue;
        } catch (const ScriptSyntaxError& error) {
            const HostError located(2, name + ":" + std::to_string(number) + ": " + error.what());
            if (!interactive)
                throw located;
            m_Messages.Print(MessageKind::Error, located.what());
        } catch (const HostError& error) {
            const HostError located(error.GetStatus(), name + ":" + std::to_string(number) + ": " + error.what());
            if (!interactive)
                throw located;
            m_Messages.Print(MessageKind::Error, located.what());
        }
        status = 1;
    }
    return status;
}
