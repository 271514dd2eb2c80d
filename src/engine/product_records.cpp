#include "engine/product_records.h"

#include "description/expressions.h"
#include "description/product_description.h"
#include "description/variable_store.h"
#include "engine/action_log_format.h"
#include "engine/action_log_reader.h"
#include "engine/engine_parts.h"
#include "engine/line_reader.h"
#include "engine/log_head.h"
#include "support/p_stream.h"

namespace {

// Line 2.
std::string archivePathIn(PStream& log) {
    LineReader lines(log);
    std::string line;
    const bool isThere = lines.rewind() && lines.readLine(line, ActionLogFormat::kRecordLineBuffer) &&
                         lines.readLine(line, ActionLogFormat::kBackupLineBuffer);
    return isThere ? std::string(withoutTrailingSpace(line)) : std::string();
}

}  // namespace

ProductRecords productRecordsOf(PStream& log, const ProductModel& model, DebugLog debugLog) {
    const LogHead head = readLogHead(log);
    LoggedValues values(head, model.variables);
    Expressions expressions(values, debugLog);
    const ProductDescription texts(model.description, expressions);
    return {texts.installLogFile().value_or(""), archivePathIn(log),
            ActionLogReader(&log, debugLog).readDescriptionPath().value_or(""),
            texts.uninstallCommand().value_or("")};
}
