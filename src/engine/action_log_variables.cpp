#include "engine/action_log_variables.h"

#include "engine/action_log_reader.h"
#include "support/p_file_stream.h"

bool ActionLogVariables::findVariableInLog(const char* logPath, const char* name, std::string& outValue) {
    PFileStream file(files_);
    if (logPath == nullptr || name == nullptr ||
        file.openFile(logPath, PFileStream::kGenericRead, PFileStream::kShareRead,
                      PFileStream::kOpenExisting) != 0) {
        return false;
    }
    const auto found = ActionLogReader(&file, DebugLog()).findVariable(name);
    outValue = found.value_or(outValue);
    return found.has_value();
}
