#include "engine/product_state.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>

#include "base/path_functions.h"
#include "engine/product_state_format.h"
#include "engine/run_records.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "support/p_file_stream.h"
#include "support/replacing_file.h"
#include "support/utilities.h"

namespace {

namespace Format = ProductStateFormat;
using platform::pathIdentity;

constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::size_t kWritePiece = 1 << 20;
constexpr std::uint32_t kReadBlock = 256 * 1024;

static_assert(std::tuple_size_v<Md5Digest> * 2 == Format::kDigestDigits);

std::optional<Md5Digest> digestOf(std::string_view text) {
    Md5Digest digest{};
    for (std::size_t i = 0; i < Format::kDigestDigits; ++i) {
        const std::size_t digit = kDigits.find(text[i]);
        if (digit == std::string_view::npos) {
            return std::nullopt;
        }
        digest[i / 2] = static_cast<std::uint8_t>(digest[i / 2] << 4 | digit);
    }
    return digest;
}

// Takes the text up to the next line end, which must be there.
std::optional<std::string_view> takeLine(std::string_view& text) {
    const std::size_t end = text.find(Format::kLineEnd);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

// The text after a word and its separator.
std::optional<std::string_view> afterWord(std::optional<std::string_view> line, std::string_view word) {
    if (!line || !line->starts_with(word) || line->size() == word.size() ||
        (*line)[word.size()] != Format::kSeparator) {
        return std::nullopt;
    }
    return line->substr(word.size() + 1);
}

template <typename Number>
bool readNumber(std::optional<std::string_view> text, Number& outNumber) {
    if (!text) {
        return false;
    }
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), outNumber);
    return error == std::errc() && end == text->data() + text->size();
}

std::string lineOf(std::string_view word, std::string_view rest) {
    std::string line(word);
    line += Format::kSeparator;
    line += rest;
    line += Format::kLineEnd;
    return line;
}

bool isOneLine(std::string_view path) {
    return path.find_first_of("\r\n") == std::string_view::npos && path.find('\0') == std::string_view::npos;
}

// The lines of files up to the last line. False unless all of them have their form and are counted there.
bool readFiles(std::string_view text, WrittenSums::Digests& outDigests) {
    std::size_t count = 0;
    while (auto line = takeLine(text)) {
        if (const auto number = afterWord(line, Format::kEnd)) {
            std::size_t expected = 0;
            return readNumber(number, expected) && expected == count && text.empty();
        }
        if (line->size() < Format::kDigestDigits + 2 ||
            (*line)[Format::kDigestDigits] != Format::kSeparator) {
            return false;
        }
        const std::optional<Md5Digest> digest = digestOf(*line);
        if (!digest) {
            return false;
        }
        outDigests[std::string(line->substr(Format::kDigestDigits + 1))].push_back(*digest);
        ++count;
    }
    return false;
}

std::string textOf(const WrittenSums& sums, std::string_view logPath, std::int32_t levels) {
    std::string text(Format::kBanner);
    text += Format::kLineEnd;
    text += lineOf(Format::kLog, pathIdentity(logPath)) + lineOf(Format::kMade, std::to_string(levels));
    std::size_t count = 0;
    for (const auto& [path, digests] : sums.digests()) {
        if (!isOneLine(path)) {
            continue;
        }
        for (const Md5Digest& digest : digests) {
            text += lineOf(md5Text(digest), path);
            ++count;
        }
    }
    return text + lineOf(Format::kEnd, std::to_string(count));
}

}  // namespace

std::optional<Md5Digest> digestOfFile(platform::FileSystem& files, std::string_view path, int* outStatus) {
    PFileStream file(files);
    int status = file.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                               PFileStream::kOpenExisting | PFileStream::kSequential);
    const auto block = std::make_unique_for_overwrite<unsigned char[]>(kReadBlock);
    Md5 md5;
    for (std::uint32_t done = 1; status == 0 && done > 0;) {
        status = file.read(block.get(), kReadBlock, done);
        md5.update(block.get(), done);
    }
    if (outStatus != nullptr) {
        *outStatus = status;
    }
    return status == 0 ? std::optional(md5.finish()) : std::nullopt;
}

void WrittenSums::add(std::string_view path, const Md5Digest& digest) {
    if (!path.empty() && !holds(path, digest)) {
        digests_[pathIdentity(path)].push_back(digest);
    }
}

void WrittenSums::addMissing(const WrittenSums& others) {
    digests_.insert(others.digests_.begin(), others.digests_.end());
}

bool WrittenSums::knows(std::string_view path) const {
    return digests_.contains(pathIdentity(path));
}

bool WrittenSums::holds(std::string_view path, const Md5Digest& digest) const {
    const auto found = digests_.find(pathIdentity(path));
    return found != digests_.end() && std::ranges::find(found->second, digest) != found->second.end();
}

std::string ProductState::pathOf(std::string_view logPath) {
    const std::string name = nameOf(Format::kNameStart, logPath);
    return name.empty() ? name : name + std::string(Format::kNameEnd);
}

std::string ProductState::markOf(std::string_view logPath) {
    return nameOf(Format::kUndoStart, logPath);
}

// Empty where nothing can be kept.
std::string ProductState::nameOf(std::string_view start, std::string_view logPath) {
    std::string directory;
    if (logPath.empty() || !isOneLine(logPath) || !environment_.stateDirectory(directory)) {
        return {};
    }
    const std::string identity = pathIdentity(logPath);
    return directory.append("/").append(start).append(md5Text(md5Of(identity.data(), identity.size())));
}

WrittenSums ProductState::load(std::string_view logPath) {
    Content content;
    const std::string path = pathOf(logPath);
    return !path.empty() && read(path, logPath, content) ? std::move(content.sums) : WrittenSums();
}

bool ProductState::read(const std::string& path, std::string_view logPath, Content& outContent) {
    const std::int64_t size = files_.fileSize(path);
    std::string text;
    if (size < 0 || size > Format::kSizeLimit || OUtils::readWholeFile(path, text, files_) != 0) {
        return false;
    }
    std::string_view rest = text;
    return takeLine(rest) == Format::kBanner &&
           afterWord(takeLine(rest), Format::kLog) == std::string_view(pathIdentity(logPath)) &&
           readNumber(afterWord(takeLine(rest), Format::kMade), outContent.levels) &&
           readFiles(rest, outContent.sums.digests_);
}

std::int32_t ProductState::levels(std::string_view logPath) {
    Content content;
    const std::string path = pathOf(logPath);
    return !path.empty() && read(path, logPath, content) ? content.levels : 0;
}

bool ProductState::save(std::string_view logPath, const WrittenSums& sums) {
    const std::string path = pathOf(logPath);
    if (path.empty()) {
        return false;
    }
    Content earlier;
    read(path, logPath, earlier);
    const std::int32_t made = makeDirectory();
    const std::int32_t levels = std::max(made, earlier.levels);
    if (write(path, textOf(sums, logPath, levels))) {
        return true;
    }
    removeDirectory(made);
    return false;
}

bool ProductState::write(const std::string& path, const std::string& text) {
    ReplacingFile file(files_);
    int status = file.open(path, platform::FileRights::kPrivate);
    for (std::size_t i = 0; status == 0 && i < text.size(); i += kWritePiece) {
        const auto size = static_cast<std::uint32_t>(std::min(kWritePiece, text.size() - i));
        std::uint32_t done = 0;
        status = file.stream().write(text.data() + i, size, done);
    }
    return status == 0 && file.putInPlace() == 0;
}

bool ProductState::beginUndo(std::string_view logPath) {
    const std::string mark = markOf(logPath);
    if (mark.empty() || files_.kindOf(mark) == platform::PathKind::kFile) {
        return !mark.empty();
    }
    PFileStream(files_).createNew(mark, true);
    return false;
}

int ProductState::endUndo(std::string_view logPath) {
    const std::string mark = markOf(logPath);
    return mark.empty() || !files_.exists(mark) ? 0 : files_.removeFile(mark);
}

bool ProductState::remove(std::string_view logPath) {
    const std::string path = pathOf(logPath);
    if (path.empty() || !files_.exists(path)) {
        return true;
    }
    Content content;
    read(path, logPath, content);
    failure_ = files_.removeFile(path);
    if (failure_ != 0) {
        return false;
    }
    leaveLevels(removeDirectory(content.levels));
    return true;
}

void ProductState::leaveLevels(std::int32_t levels) {
    std::string directory;
    std::vector<platform::DirectoryEntry> entries;
    if (levels <= 0 || !environment_.stateDirectory(directory) || files_.list(directory, entries) != 0) {
        return;
    }
    for (const platform::DirectoryEntry& entry : entries) {
        if (entry.name.starts_with(Format::kNameStart) && entry.name.ends_with(Format::kNameEnd) &&
            takeLevels(directory + "/" + entry.name, levels)) {
            return;
        }
    }
}

// The text stays as it is but for the number.
bool ProductState::takeLevels(const std::string& path, std::int32_t levels) {
    const std::int64_t size = files_.fileSize(path);
    std::string text;
    if (size < 0 || size > Format::kSizeLimit || OUtils::readWholeFile(path, text, files_) != 0) {
        return false;
    }
    std::string_view rest = text;
    const auto banner = takeLine(rest);
    const auto log = takeLine(rest);
    std::int32_t present = 0;
    if (banner != Format::kBanner || !afterWord(log, Format::kLog) ||
        !readNumber(afterWord(takeLine(rest), Format::kMade), present)) {
        return false;
    }
    const std::string line = lineOf(Format::kMade, std::to_string(std::max(present, levels)));
    return write(path, std::string(*banner) + Format::kLineEnd + std::string(*log) + Format::kLineEnd + line +
                           std::string(rest));
}

// The number of levels that were made.
std::int32_t ProductState::makeDirectory() {
    std::string directory;
    environment_.stateDirectory(directory);
    std::vector<std::string> missing;  // deepest first
    while (!directory.empty() && !files_.exists(directory)) {
        missing.push_back(directory);
        const std::size_t separator = directory.find_last_of("/\\");
        directory.resize(separator == std::string::npos ? 0 : separator);
    }
    std::int32_t made = 0;
    for (auto level = missing.rbegin(); level != missing.rend(); ++level) {
        if (files_.createDirectory(*level) != 0) {
            break;
        }
        ++made;
    }
    return made;
}

// Others may have put something there meanwhile: the system removes only what is empty. The number of levels
// that stay for that.
std::int32_t ProductState::removeDirectory(std::int32_t levels) {
    std::string directory;
    environment_.stateDirectory(directory);
    if (levels > 0) {
        RunRecords::removeIfAlone(files_, directory);
    }
    for (; levels > 0 && !directory.empty() && files_.removeDirectory(directory) == 0; --levels) {
        const std::size_t separator = directory.find_last_of("/\\");
        directory.resize(separator == std::string::npos ? 0 : separator);
    }
    return levels;
}
