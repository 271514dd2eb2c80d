#include "ui/gui/start/carried_toolkit.h"

Toolkit* carriedToolkit(std::string& /*outReason*/) {
    return tandrelToolkit(kToolkitVersion);
}
