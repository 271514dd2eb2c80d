#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// What is to become of a section. Null texts are absent: without a key the section goes, without a value the
// key; a new line is put in front of `beforeKey`. Names match in their exact case.
struct IniEdit {
    const char* section = nullptr;
    const char* key = nullptr;
    const char* value = nullptr;
    const char* beforeKey = nullptr;
};

// Edits the lines of an INI file in one walk. Borrows the lines and the texts of the edit.
class IniEditor {
public:
    // `section` is neither null nor empty.
    explicit IniEditor(const IniEdit& edit);

    void run(const std::vector<std::string_view>& lines);

    // The edited lines; they look into the ones that were given and into this object.
    const std::vector<std::string_view>& lines() const { return lines_; }
    // What stood behind the `=` of each line of the key that was replaced or deleted, as it was.
    const std::vector<std::string_view>& lostValues() const { return lostValues_; }

private:
    void takeLine(std::string_view line);
    void takeHeader(std::string_view line);
    void takeKey(std::string_view line, std::size_t sign);
    void takeMatch(std::string_view line, std::size_t sign);
    void keep(std::string_view line) { lines_.push_back(line); }
    void insert(std::size_t position);
    void finish();

    bool isTarget(std::string_view section) const { return section == section_; }

    const std::string_view section_;
    const IniEdit edit_;
    const std::string header_;
    std::string newLine_;
    std::string replacement_;

    std::vector<std::string_view> lines_;
    std::vector<std::string_view> lostValues_;
    std::string_view currentSection_;
    std::size_t lastLine_ = 0;
    std::size_t beforeLine_ = std::string_view::npos;
    bool done_ = false;
};
