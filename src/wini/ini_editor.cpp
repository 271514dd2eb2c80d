#include "wini/ini_editor.h"

#include <algorithm>

namespace {

std::string lineOf(const IniEdit& edit) {
    return edit.key != nullptr && edit.value != nullptr ? std::string(edit.key) + '=' + edit.value
                                                        : std::string();
}

}  // namespace

IniEditor::IniEditor(const IniEdit& edit)
    : section_(edit.section),
      edit_(edit),
      header_('[' + std::string(edit.section) + ']'),
      newLine_(lineOf(edit)) {}

void IniEditor::run(const std::vector<std::string_view>& lines) {
    lines_.reserve(lines.size() + 2);
    for (const std::string_view line : lines) {
        if (done_) {
            keep(line);
        } else {
            takeLine(line);
        }
    }
    if (!done_ && edit_.key != nullptr && edit_.value != nullptr) {
        finish();
    }
}

void IniEditor::takeLine(std::string_view line) {
    const std::size_t sign = line.find('=');
    const bool isPassedOver = line.empty() || line.front() == ';';
    if (!isPassedOver && line.front() == '[' && line.find(']') != std::string_view::npos) {
        takeHeader(line);
    } else if (!isPassedOver && sign != std::string_view::npos && isTarget(currentSection_)) {
        takeKey(line, sign);
    } else {
        keep(line);
    }
}

void IniEditor::takeHeader(std::string_view line) {
    const std::string_view previousSection = currentSection_;
    currentSection_ = line.substr(1, line.rfind(']') - 1);
    if (edit_.key != nullptr && edit_.value != nullptr && isTarget(previousSection)) {
        insert(beforeLine_ != std::string_view::npos ? beforeLine_ : lastLine_ + 1);
        done_ = true;
        keep(line);
        return;
    }
    if (!isTarget(currentSection_)) {
        keep(line);
    } else if (edit_.key != nullptr) {
        lastLine_ = lines_.size();
        keep(line);
    }
}

void IniEditor::takeKey(std::string_view line, std::size_t sign) {
    const std::string_view name = line.substr(0, sign);
    if (edit_.key == nullptr) {
        return;  // goes with its section
    }
    if (edit_.beforeKey != nullptr && name == edit_.beforeKey) {
        beforeLine_ = lines_.size();
    } else if (name == edit_.key) {
        takeMatch(line, sign);
        return;
    }
    lastLine_ = lines_.size();
    keep(line);
}

void IniEditor::takeMatch(std::string_view line, std::size_t sign) {
    lostValues_.push_back(line.substr(sign + 1));
    done_ = edit_.beforeKey == nullptr;
    if (done_ && edit_.value != nullptr) {
        // A return that the system's line ends don't have is part of the line's own.
        replacement_ = newLine_ + (line.ends_with('\r') ? "\r" : "");
        keep(replacement_);
    }
}

void IniEditor::insert(std::size_t position) {
    const std::size_t bounded = std::min(position, lines_.size());
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(bounded), newLine_);
}

void IniEditor::finish() {
    if (!isTarget(currentSection_)) {
        keep(header_);
    }
    insert(std::min(beforeLine_, lines_.size()));
}
