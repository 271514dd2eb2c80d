#include "packager/loss_warnings.h"

#include "checking/document_losses.h"

void warnOfLosses(const std::string& path, std::string_view document, DocumentFormat format,
                  PackagerOutput& output) {
    const std::string start = "packager: warning: " + printable(path) + ": ";
    for (const std::string& loss : lossesOf(document, format)) {
        output.warn(start + printable(loss));
    }
}
