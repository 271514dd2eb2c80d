#pragma once

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "description/wizard_word_table.h"
#include "engine/changes/change.h"
#include "engine/changes/file_change.h"
#include "engine/description_tags.h"
#include "engine/kept_files.h"

struct EngineParts;

// What the changes of one installation or uninstallation share. Made for the job and gone with it.
struct ChangeJob {
    // All of them outlive this object.
    ChangeJob(const EngineParts& engineParts, ActionLogWriter& log, Report& report);
    ChangeJob(const ChangeJob&) = delete;
    ChangeJob& operator=(const ChangeJob&) = delete;

    const EngineParts& parts;
    DescriptionTags tags;
    ReplacedFiles replaced;
    KeptFiles kept;  // in an uninstallation
    ChangeContext context;
};

// When a kind of change is taken back.
enum class UndoPass {
    kFirst,  // before all other records, since what it edits may be a file that they delete
    kMain,   // in the order of the log
};

// When finishUndo of a kind is called, once every record has been read.
enum class UndoEnd {
    kBeforeCleaning,  // before the files are deleted that only a pattern names
    kAfterCleaning,
    kAfterProgress,  // when everything else is done
};

// One row for each kind of change.
struct ChangeKind {
    std::array<std::string_view, 2> tags;  // of its records; the second may be empty
    std::string_view element;              // of the description; empty: other changes make it
    std::optional<WordKey> status;  // shown while an installation makes it; none: it isn't a phase of its own
    UndoPass pass;
    UndoEnd end;
    std::unique_ptr<Change> (*make)(ChangeJob& job);

    // A line of the log belongs to a kind when it begins with one of its tags; otherwise the result is empty.
    std::string_view tagOf(std::string_view line) const;
};

// In the order in which an installation makes the changes.
std::span<const ChangeKind> changeKinds();
