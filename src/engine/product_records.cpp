#include "engine/product_records.h"

#include "description/expressions.h"
#include "description/product_description.h"
#include "description/variable_store.h"
#include "engine/action_log_reader.h"
#include "engine/engine_parts.h"
#include "engine/log_head.h"

ProductRecords productRecordsOf(PStream& log, const ProductModel& model, DebugLog debugLog) {
    const LogHead head = readLogHead(log);
    LoggedValues values(head, model.variables);
    Expressions expressions(values, debugLog);
    const ProductDescription texts(model.description, expressions);
    ActionLogReader reader(&log, debugLog);
    return {texts.installLogFile().value_or(""), reader.readArchivePath().value_or(""),
            reader.readDescriptionPath().value_or(""), texts.uninstallCommand().value_or("")};
}
