#include "packager/findings_report.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <set>

#include "packager/packager_output.h"

namespace {

// A string of JSON (RFC 8259). The text is UTF-8.
std::string jsonString(std::string_view text) {
    constexpr std::string_view kHexadecimal = "0123456789abcdef";
    constexpr unsigned char kFirstPlain = 0x20;
    std::string json = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            json += '\\';
            json += c;
        } else if (byte < kFirstPlain) {
            json += "\\u00";
            json += kHexadecimal[byte >> 4U];
            json += kHexadecimal[byte & 0xFU];
        } else {
            json += c;
        }
    }
    return json + "\"";
}

std::string field(std::string_view name, std::string_view value) {
    return jsonString(name) + ": " + jsonString(value);
}

std::string field(std::string_view name, std::int32_t value) {
    return jsonString(name) + ": " + std::to_string(value);
}

std::string counted(std::ptrdiff_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// SARIF names a file by a relative reference (RFC 3986).
std::string uriOf(const std::string& path) {
    constexpr std::string_view kPlain = "-._~/!$&'()*+,;=@";
    constexpr std::string_view kHexadecimal = "0123456789ABCDEF";
    std::string uri;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (isLetter || kPlain.find(c) != std::string_view::npos) {
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
    std::set<std::string_view> codes;
    for (const Finding& finding : findings) {
        codes.insert(finding.code.name());
    }
    for (auto code = codes.begin(); code != codes.end(); ++code) {
        lines.push_back("            {" + field("id", *code) + "}" +
                        (std::next(code) == codes.end() ? "" : ","));
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
