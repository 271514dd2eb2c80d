#include "packager/findings_report.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>

#include "base/json_text.h"
#include "packager/packager_output.h"

namespace {

using OUtils::jsonString;

std::string field(std::string_view name, std::string_view value) {
    return jsonString(name) + ": " + jsonString(value);
}

std::string field(std::string_view name, std::int32_t value) {
    return jsonString(name) + ": " + std::to_string(value);
}

std::string counted(std::ptrdiff_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// What SARIF needs of an absolute path before the path itself.
std::string schemeOf(const std::string& path) {
    const bool isOfDrive = path.size() > 2 && path[1] == ':';
    const bool isOfServer = path.starts_with("//") || path.starts_with("\\\\");
    if (isOfServer) {
        return "file:";
    }
    return isOfDrive ? "file:///" : path.starts_with('/') ? "file://" : "";
}

// SARIF names a file by a reference (RFC 3986), which is relative where the path is.
std::string uriOf(const std::string& path) {
    constexpr std::string_view kPlain = "-._~/!$&'()*+,;=@";
    constexpr std::string_view kHexadecimal = "0123456789ABCDEF";
    std::string uri = schemeOf(path);
    const bool hasDrive = uri == "file:///";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        const bool isPlain = isLetter || kPlain.find(c) != std::string_view::npos;
        if (isPlain || (hasDrive && c == ':')) {
            uri += c;
        } else if (c == '\\') {
            uri += '/';
        } else {
            uri += '%';
            uri += kHexadecimal[byte >> 4U];
            uri += kHexadecimal[byte & 0xFU];
        }
    }
    return uri;
}

void addSarifRules(const std::vector<Finding>& findings, std::vector<std::string>& lines) {
    std::map<std::string_view, FindingCode> codes;
    for (const Finding& finding : findings) {
        codes.emplace(finding.code.name(), finding.code);
    }
    std::size_t rest = codes.size();
    for (const auto& [name, code] : codes) {
        --rest;
        lines.push_back("            {" + field("id", name) + ", \"defaultConfiguration\": {" +
                        field("level", severityWord(code.severity())) + "}, \"help\": {" +
                        field("text", code.hint()) + "}}" + (rest == 0 ? "" : ","));
    }
}

std::string sarifResult(const std::string& path, const Finding& finding) {
    return "        {" + field("ruleId", finding.code.name()) + ", " +
           field("level", severityWord(finding.code.severity())) + ", \"message\": {" +
           field("text", finding.message + ". " + finding.hint) +
           "}, \"locations\": [{\"physicalLocation\": {\"artifactLocation\": {" + field("uri", uriOf(path)) +
           "}, \"region\": {" + field("startLine", finding.place.line) + ", " +
           field("startColumn", finding.place.column) + "}}}]}";
}

}  // namespace

std::string_view severityWord(Severity severity) {
    return severity == Severity::kError ? "error" : "warning";
}

std::string findingLine(const std::string& path, const Finding& finding, std::string_view severity) {
    return printable(path + ":" + std::to_string(finding.place.line) + ":" +
                     std::to_string(finding.place.column) + ": " + std::string(severity) + ": " +
                     finding.message + " [" + std::string(finding.code.name()) + "]");
}

std::vector<std::string> findingsAsText(const std::string& path, const std::vector<Finding>& findings) {
    std::vector<std::string> lines;
    for (const Finding& finding : findings) {
        lines.push_back(findingLine(path, finding, severityWord(finding.code.severity())));
        lines.push_back("    " + printable(finding.hint));
    }
    const auto errors = std::ranges::count_if(
        findings, [](const Finding& finding) { return finding.code.severity() == Severity::kError; });
    const auto warnings = static_cast<std::ptrdiff_t>(findings.size()) - errors;
    lines.push_back(printable(path) + ": " + counted(errors, "error") + ", " + counted(warnings, "warning"));
    return lines;
}

std::vector<std::string> findingsAsJson(const std::string& path, const std::vector<Finding>& findings) {
    std::vector<std::string> lines{"["};
    for (std::size_t i = 0; i < findings.size(); ++i) {
        const Finding& finding = findings[i];
        lines.push_back("  {" + field("file", path) + ", " + field("line", finding.place.line) + ", " +
                        field("column", finding.place.column) + ", " + field("code", finding.code.name()) +
                        ", " + field("severity", severityWord(finding.code.severity())) + ", " +
                        field("message", finding.message) + ", " + field("hint", finding.hint) + "}" +
                        (i + 1 < findings.size() ? "," : ""));
    }
    lines.emplace_back("]");
    return lines;
}

std::vector<std::string> findingsAsSarif(const std::string& path, const std::vector<Finding>& findings) {
    std::vector<std::string> lines{"{",
                                   "  \"$schema\": \"https://json.schemastore.org/sarif-2.1.0.json\",",
                                   "  \"version\": \"2.1.0\",",
                                   "  \"runs\": [",
                                   "    {",
                                   "      \"columnKind\": \"unicodeCodePoints\",",
                                   "      \"tool\": {",
                                   "        \"driver\": {",
                                   "          \"name\": \"packager\",",
                                   "          \"rules\": ["};
    addSarifRules(findings, lines);
    lines.insert(lines.end(), {"          ]", "        }", "      },", "      \"results\": ["});
    for (std::size_t i = 0; i < findings.size(); ++i) {
        lines.push_back(sarifResult(path, findings[i]) + (i + 1 < findings.size() ? "," : ""));
    }
    lines.insert(lines.end(), {"      ]", "    }", "  ]", "}"});
    return lines;
}
