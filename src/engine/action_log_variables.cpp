#include "engine/action_log_variables.h"

#include "engine/action_log_reader.h"
#include "support/p_file_stream.h"

std::optional<std::string> ActionLogVariables::findVariableInLog(std::string_view logPath,
                                                                 std::string_view name) {
    PFileStream file(files_);
    if (file.openFile(logPath, PFileStream::kGenericRead, PFileStream::kShareRead,
                      PFileStream::kOpenExisting) != 0) {
        return std::nullopt;
    }
    return ActionLogReader(&file, DebugLog()).findVariable(name);
}
