#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/failure.h"
#include "description/pxml.h"
#include "packager/answers_template.h"
#include "packager/commands.h"
#include "packager/package_file_reader.h"
#include "packager/packing_list.h"
#include "support/utilities.h"

namespace {

constexpr std::string_view kDescriptionAlias = "install.xml";
constexpr std::string_view kBeforeText = " \t\r\n\xEF\xBB\xBF";

std::string packedDescription(const std::string& path, platform::FileSystem& files) {
    PackageFileReader package(files);
    package.locate(path);
    package.load();
    const Cabinet& cabinet = package.cabinet();
    const std::optional<std::int32_t> index = cabinet.findAlias(kDescriptionAlias);
    const std::optional<std::string_view> text = index ? cabinet.entryContent(*index) : std::nullopt;
    if (!text) {
        fail(path + ": the package has no description");
    }
    return std::string(*text);
}

// A description begins with an element or a comment, and no package does.
bool isDescription(const std::string& path, platform::FileSystem& files) {
    PFileStream stream(files);
    std::array<char, 256> start{};
    std::uint32_t size = 0;
    const bool isRead = stream.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                                        PFileStream::kOpenExisting) == 0 &&
                        stream.read(start.data(), start.size(), size) == 0;
    const std::string_view text(start.data(), isRead ? size : 0);
    const std::size_t begin = text.find_first_not_of(kBeforeText);
    return begin != std::string_view::npos && text[begin] == '<';
}

}  // namespace

void runAnswers(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    const std::string& path = commandLine.package;
    PXML description;
    description.parseText(isDescription(path, files) ? descriptionText(path, files)
                                                     : packedDescription(path, files));
    const std::string answers = answersTemplate(description);
    if (commandLine.output.empty()) {
        printLines(answers, output);
        return;
    }
    if (const int status = OUtils::writeWholeFile(commandLine.output, answers, files); status != 0) {
        fail(commandLine.output + ": the answers can't be written: " + OUtils::writingErrorText(status));
    }
}
