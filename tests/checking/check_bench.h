#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "checking/check_context.h"
#include "checking/declared_variables.h"
#include "checking/packed_files.h"
#include "checking/path_values.h"
#include "platform/memory/memory_file_system.h"

// What a check is given.
struct CheckedParts {
    const CheckContext& context;
    const DeclaredVariables& variables;
    const PathValues& paths;
    const PackedFiles& files;
};

// Runs one check over the sections of a description.
class CheckBench {
public:
    using Check = std::function<void(const CheckedParts& parts)>;

    explicit CheckBench(Check check) : check_(std::move(check)) {}

    // "code line:column" of each finding, in the order of their places. The sections begin in line 2.
    std::vector<std::string> find(const std::string& sections) {
        std::vector<std::string> found;
        for (const Finding& finding : findings(sections)) {
            found.push_back(std::string(finding.code.name()) + " " + std::to_string(finding.place.line) +
                            ":" + std::to_string(finding.place.column));
        }
        return found;
    }

    // The messages alone.
    std::vector<std::string> messages(const std::string& sections) {
        std::vector<std::string> found;
        for (const Finding& finding : findings(sections)) {
            found.push_back(finding.message);
        }
        return found;
    }

    std::vector<Finding> findings(const std::string& sections) {
        const std::string text =
            "<TandrelGroupInstallation>\n" + sections + "\n</TandrelGroupInstallation>\n";
        Findings found(text);
        SourceDocument source;
        EXPECT_TRUE(source.read(text, found));
        EXPECT_TRUE(found.empty());
        const CheckContext context(source, targets, found, files, root);
        const DeclaredVariables variables(context);
        const PathValues paths(context, variables);
        const PackedFiles packed(context);
        check_({context, variables, paths, packed});
        return found.sorted();
    }

    MemoryFileSystem files;
    std::optional<std::string> root;
    CheckTargets targets;

private:
    Check check_;
};

using Found = std::vector<std::string>;
