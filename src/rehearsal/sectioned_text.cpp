#include "rehearsal/sectioned_text.h"

#include <algorithm>
#include <set>

#include "base/text_functions.h"
#include "rehearsal/entry_text.h"
#include "rehearsal/machine_format.h"
#include "text/utf8_check.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

class SectionReader {
public:
    void take(std::string_view line, int number) {
        check(line, number);
        const std::string_view text = OUtils::trimWhiteSpace(line);
        if (text.starts_with(MachineFormat::kComment)) {
            (result_.sections.empty() ? result_.comments : result_.sections.back().comments)
                .emplace_back(text);
        } else if (text.starts_with('[')) {
            open(text, number);
        } else if (!text.empty() && result_.sections.empty()) {
            failAtLine(number, "this is before the first section");
        } else if (!text.empty()) {
            result_.sections.back().lines.push_back({number, std::string(text)});
        }
    }

    SectionedText take() { return std::move(result_); }

private:
    static void check(std::string_view line, int number) {
        if (findInvalidUtf8(line)) {
            failAtLine(number, "this isn't UTF-8");
        }
        if (std::ranges::any_of(line, [](char c) { return static_cast<unsigned char>(c) < ' '; })) {
            failAtLine(number, "a control character; between quotes, a TAB is written \\t");
        }
    }

    void open(std::string_view text, int number) {
        if (!text.ends_with(']')) {
            failAtLine(number, "the name of a section ends with ]");
        }
        const std::string name(OUtils::trimWhiteSpace(text.substr(1, text.size() - 2)));
        if (!names_.insert(name).second) {
            failAtLine(number, "the section [" + name + "] is there already");
        }
        result_.sections.push_back({name, number, {}, {}});
    }

    SectionedText result_;
    std::set<std::string> names_;
};

}  // namespace

SectionedText readSections(std::string_view text) {
    if (text.size() > MachineFormat::kMostBytes) {
        failAtLine(1, "the file is larger than " + std::to_string(MachineFormat::kMostBytes >> 20U) + " MiB");
    }
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    SectionReader reader;
    for (int number = 1; !text.empty(); ++number) {
        if (number > MachineFormat::kMostLines) {
            failAtLine(number, "there are too many lines");
        }
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        reader.take(line, number);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return reader.take();
}
