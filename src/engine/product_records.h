#pragma once

#include "contracts/nested_session.h"
#include "support/debug_log.h"

class PStream;
struct ProductModel;

// Where the files are by which the product of an open action log is uninstalled. `model` is its description;
// the variables have the values of the log. Moves the log.
ProductRecords productRecordsOf(PStream& log, const ProductModel& model, DebugLog debugLog);
