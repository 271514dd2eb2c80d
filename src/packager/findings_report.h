#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "checking/finding.h"

// Findings in the forms in which packager check prints them: lines without a line end. `path` is that of the
// description.

// For people: two lines for each finding, and one with the numbers at the end.
std::vector<std::string> findingsAsText(const std::string& path, const std::vector<Finding>& findings);
// A list of objects with file, line, column, code, severity, message and hint.
std::vector<std::string> findingsAsJson(const std::string& path, const std::vector<Finding>& findings);
// SARIF 2.1.0 (Static Analysis Results Interchange Format, OASIS).
std::vector<std::string> findingsAsSarif(const std::string& path, const std::vector<Finding>& findings);

// The first of the two lines: file, place, severity, message and code.
std::string findingLine(const std::string& path, const Finding& finding, std::string_view severity);
std::string_view severityWord(Severity severity);
