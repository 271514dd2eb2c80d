#include "checking/description_check.h"

#include "checking/alias_check.h"
#include "checking/change_check.h"
#include "checking/cleanup_check.h"
#include "checking/condition_check.h"
#include "checking/declared_variables.h"
#include "checking/document_check.h"
#include "checking/file_check.h"
#include "checking/icon_check.h"
#include "checking/packed_files.h"
#include "checking/page_check.h"
#include "checking/path_check.h"
#include "checking/path_values.h"
#include "checking/payload_check.h"
#include "checking/picture_check.h"
#include "checking/record_check.h"
#include "checking/setting_check.h"
#include "checking/source_document.h"
#include "checking/variable_check.h"
#include "checking/wizard_word_check.h"
#include "checking/word_check.h"

std::vector<Finding> checkDescription(std::string_view text, const CheckOptions& options,
                                      platform::FileSystem& files) {
    Findings findings(text);
    SourceDocument source;
    if (source.read(text, findings)) {
        const CheckContext context(source, options.targets, findings, files, options.root);
        const DeclaredVariables variables(context);
        checkWords(context);
        checkVariables(context, variables);
        checkConditions(context, variables);
        checkPages(context);
        const PackedFiles packed(context);
        const PathValues paths(context, variables);
        checkAliases(context, packed);
        checkFiles(context, packed, paths);
        checkPayload(context, packed);
        checkPaths(context, packed, paths);
        checkRecords(context, packed, paths);
        checkCleanUps(context, variables, packed, paths);
        checkChanges(context, packed, paths);
        checkSettings(context, paths);
        checkDocuments(context, packed);
        checkPictures(context, packed);
        checkIcon(context, packed);
        checkWizardWords(context);
    }
    return findings.sorted();
}
