#include <algorithm>
#include <string>
#include <string_view>

#include "base/failure.h"
#include "base/text_functions.h"
#include "checking/document_fault.h"
#include "packager/commands.h"
#include "packager/loss_warnings.h"
#include "support/utilities.h"
#include "text/document_text.h"
#include "text/verbatim_text.h"

namespace {

constexpr int kDefaultWidth = 80;
constexpr std::string_view kRichTextExtension = ".rtf";
constexpr std::string_view kRichTextStart = "{\\rtf";

std::string readDocument(const std::string& path, platform::FileSystem& files) {
    std::string document;
    const int status = OUtils::readWholeFile(path, document, files);
    if (status != 0) {
        fail(path + ": the document can't be read: " + OUtils::readingErrorText(status));
    }
    return document;
}

bool isRichText(std::string_view path, std::string_view document) {
    const std::size_t tail = path.size() - std::min(path.size(), kRichTextExtension.size());
    return OUtils::equalsIgnoreCase(path.substr(tail), kRichTextExtension) ||
           document.starts_with(kRichTextStart);
}

DocumentFormat formatOf(const CommandLine& commandLine, std::string_view document) {
    if (commandLine.verbatim) {
        return DocumentFormat::kVerbatim;
    }
    return isRichText(commandLine.document, document) ? DocumentFormat::kOfElement
                                                      : DocumentFormat::kMarkdown;
}

void showRichText(const CommandLine& commandLine, const std::string& document, int width,
                  PackagerOutput& output) {
    if (commandLine.html || commandLine.tree) {
        fail(commandLine.document + ": this is rich text, which has no --html and no --tree: use --plain");
    }
    const auto text = richTextAsText(document, width);
    if (!text) {
        fail(commandLine.document + ": " + richTextFault(document));
    }
    printLines(*text, output);
}

// What was understood of a broken document helps to find the fault, so it comes before the message.
void showTree(const CommandLine& commandLine, const std::string& document, PackagerOutput& output) {
    TGMParseResult result;
    printLines(markdownAsTree(document, result), output);
    if (!result.succeeded()) {
        fail(commandLine.document + ": " + markdownFault(document));
    }
}

void showMarkdown(const CommandLine& commandLine, const std::string& document, int width,
                  PackagerOutput& output) {
    const auto text = commandLine.html ? markdownAsHtml(document) : markdownAsText(document, width);
    if (!text) {
        fail(commandLine.document + ": " + markdownFault(document));
    }
    printLines(*text, output);
}

}  // namespace

void runText(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    const std::string document = readDocument(commandLine.document, files);
    const int width = commandLine.width == 0 ? kDefaultWidth : commandLine.width;
    const DocumentFormat format = formatOf(commandLine, document);
    warnOfLosses(commandLine.document, document, format, output);
    if (format == DocumentFormat::kVerbatim) {
        printLines(verbatimAsText(document, width), output);
    } else if (format == DocumentFormat::kOfElement) {
        showRichText(commandLine, document, width, output);
    } else if (commandLine.tree) {
        showTree(commandLine, document, output);
    } else {
        showMarkdown(commandLine, document, width, output);
    }
}
