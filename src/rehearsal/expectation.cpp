#include "rehearsal/expectation.h"

#include <algorithm>
#include <unordered_set>

#include "rehearsal/line_difference.h"
#include "rehearsal/machine_format.h"

namespace {

using Lines = std::vector<std::string>;

const OutcomeSection* findSection(const Outcome& outcome, std::string_view name) {
    const auto found = std::ranges::find(outcome.sections, name, &OutcomeSection::name);
    return found == outcome.sections.end() ? nullptr : &*found;
}

const std::string& anyValue() {
    static const std::string end = std::string(MachineFormat::kIs) + std::string(MachineFormat::kAnything);
    return end;
}

// "NAME = *" accepts any value.
bool fits(const std::string& expected, const std::string& found) {
    return expected == found ||
           (expected.ends_with(anyValue()) && found.starts_with(expected.substr(0, expected.size() - 1)));
}

Lines textsOf(const TextSection& section) {
    Lines texts;
    for (const NumberedLine& line : section.lines) {
        texts.push_back(line.text);
    }
    return texts;
}

// With the lines of `old` that accept any value in the places of those that they fit.
Lines withAcceptedValues(const Lines& old, const Lines& found) {
    std::unordered_set<std::string> accepted;
    for (const std::string& line : old) {
        if (line.ends_with(anyValue())) {
            accepted.insert(line);
        }
    }
    Lines lines = found;
    for (std::string& line : lines) {
        const std::size_t end = line.find(MachineFormat::kIs);
        const std::string any = line.substr(0, std::min(end, line.size())) + anyValue();
        if (end != std::string::npos && accepted.contains(any)) {
            line = any;
        }
    }
    return lines;
}

void append(std::string& text, const Lines& lines) {
    for (const std::string& line : lines) {
        text.append(line).append("\n");
    }
}

std::string headOf(const std::string& name) {
    return "[" + name + "]";
}

}  // namespace

Expectation::Expectation(std::string_view text) : text_(readSections(text)) {}

std::vector<std::string> Expectation::differences(const Outcome& outcome) const {
    Lines all;
    for (const TextSection& section : text_.sections) {
        const OutcomeSection* const found = findSection(outcome, section.name);
        Lines lines = found == nullptr
                          ? Lines{"-there is no such section; the outcome without --expect shows all"}
                          : lineDifference(textsOf(section), found->lines, fits);
        if (!lines.empty()) {
            all.push_back("@@ " + headOf(section.name) + " @@");
            all.insert(all.end(), lines.begin(), lines.end());
        }
    }
    return all;
}

std::string Expectation::updated(const Outcome& outcome) const {
    std::string text;
    append(text, text_.comments);
    for (const TextSection& section : text_.sections) {
        const OutcomeSection* const found = findSection(outcome, section.name);
        if (found == nullptr) {
            continue;
        }
        text += text.empty() ? "" : "\n";
        append(text, {headOf(section.name)});
        append(text, section.comments);
        append(text, withAcceptedValues(textsOf(section), found->lines));
    }
    return text;
}

std::string newExpectation(const Outcome& outcome) {
    std::string text;
    for (const OutcomeSection& section : outcome.sections) {
        if (!section.name.ends_with(MachineFormat::kLog)) {
            text += text.empty() ? "" : "\n";
            append(text, {headOf(section.name)});
            append(text, section.lines);
        }
    }
    return text;
}

std::vector<std::string> outcomeLines(const Outcome& outcome) {
    Lines lines;
    for (const OutcomeSection& section : outcome.sections) {
        if (!lines.empty()) {
            lines.emplace_back();
        }
        lines.push_back(headOf(section.name));
        lines.insert(lines.end(), section.lines.begin(), section.lines.end());
    }
    return lines;
}
