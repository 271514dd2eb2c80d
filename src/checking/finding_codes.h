#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>

// What packager check can find. The names are a part of its interface: scripts allow findings by them, so
// none ever changes its meaning. docs/manual/check.md describes each with an example.

enum class Severity {
    kWarning,  // odd, dangerous or without effect
    kError,    // surely breaks the product, or names what doesn't exist
};

struct FindingKind {
    std::string_view name;
    Severity severity;
    std::string_view hint;  // what to do, where the place doesn't say more
};

namespace finding_kinds {

using enum Severity;

inline constexpr FindingKind kAll[] = {
    {"form-not-well-formed", kError, "Write XML: an editor that knows XML shows what is wrong."},
    {"form-unclosed", kError, "Close it."},
    {"form-mismatched-tag", kError,
     "Close the elements in the reverse of the order in which they were opened."},
    {"form-empty", kError, "Describe a product in an element TandrelGroupInstallation."},
    {"form-comment", kError, "Write no two dashes within a comment."},
    {"form-cdata", kError, "Write the text itself, with &lt; and &amp; in it."},
    {"form-doctype", kError, "Leave the document type out."},
    {"form-reference", kError,
     "Write &amp; for a &, and of references only &amp; &lt; &gt; &quot; and &apos;."},
    {"form-character-reference", kError, "Write the character itself, in UTF-8."},
    {"form-encoding", kError, "Save the file as UTF-8, and declare no other encoding."},
    {"form-unquoted-attribute", kError, "Put the value in quotes."},
    {"form-duplicate-attribute", kError, "Take one of the two out."},
    {"form-less-in-value", kError, "Write &lt; for it."},
    {"form-greater-in-value", kError, "Write &gt; for it."},
    {"form-after-root", kError, "Put everything into one element TandrelGroupInstallation."},
    {"form-text-lost", kError,
     "Put the whole text behind comments and child elements, or into an element of its own."},
    {"form-read-differently", kError,
     "Write it in a simpler way, without comments and instructions next to it."},
    {"form-line-break", kWarning, "Write the value in one line."},
    {"form-zero-byte", kError, "Take the zero byte out."},
    {"form-too-large", kError, "Describe less."},
    {"element-unknown", kError, "Take it out, or correct its name."},
    {"element-case", kError, "Write its name as the manual does."},
    {"element-misplaced", kError, "Move it to where the manual says."},
    {"element-idle", kWarning, "Take it out."},
    {"element-repeated", kWarning, "Put everything into the first one."},
    {"element-missing", kError, "Add it."},
    {"attribute-unknown", kError, "Take it out, or correct its name."},
    {"attribute-missing", kError, "Add it."},
    {"attribute-empty", kError, "Give it a value."},
    {"attribute-repeated", kWarning, "Take the others out."},
    {"text-missing", kError, "Give it a text, or take it out."},
    {"text-ignored", kWarning, "Take the text out."},
    {"text-too-long", kError, "Write a shorter text."},
    {"word-unknown", kError, "Write one of the words of the manual."},
    {"word-case", kError, "Write it as the manual does."},
    {"number-invalid", kError, "Write a whole number in decimal digits."},
    {"number-range", kError, "Write a number that is possible."},
    {"colour-invalid", kError,
     "Write RRGGBB in hexadecimal digits, or Group: and the name of a CustomGroup."},
    {"colour-group-unknown", kError, "Describe it in ColourTheme."},
    {"switch-on", kWarning, "Take the attribute out to switch it off."},
    {"variable-undeclared", kError, "Declare it by a Value in DefValues."},
    {"variable-unused", kWarning, "Take it out."},
    {"variable-predefined", kError, "Use a variable of your own."},
    {"variable-option-taken", kWarning, "Give it a name that no option of a setup has."},
    {"variable-name", kError, "Use ASCII letters, digits and _ alone."},
    {"variable-order", kError, "Put the Value of what is referred to above this one."},
    {"variable-circular", kError, "Let one of them have a value that doesn't refer to the others."},
    {"variable-recalculated", kWarning, "Take Recalculate out, or ask for another variable."},
    {"variable-repeated", kWarning, "Give the two Conditions that exclude each other."},
    {"variable-use-old", kWarning, "Add UseOld=\"1\" to its Value."},
    {"variable-address", kWarning,
     "Write the address where it is needed: a variable keeps one of several slashes."},
    {"variable-never-set", kWarning,
     "Declare it by a Value in DefValues, so that conditions can be read before it is set."},
    {"reference-unclosed", kError, "Write ] behind the name."},
    {"reference-name", kWarning, "Write the name of a variable between the brackets, or take them out."},
    {"reference-form", kError, "Write $NAME in texts of DefValues, and [NAME] everywhere else."},
    {"reference-shown", kWarning, "Put the value where references are replaced: none are in this text."},
    {"reference-unexpanded", kWarning, "Add Expand=\"1\"."},
    {"condition-broken", kError,
     "Write comparisons such as [A]==1 or '[B]'=='text', joined by , for and and ; for or."},
    {"condition-assignment", kError, "Write == to compare."},
    {"condition-bare-word", kError, "Put texts in single quotes: '[NAME]'=='word'."},
    {"condition-operator", kError, "Write , for and, ; for or, and != for not equal."},
    {"condition-parenthesis", kWarning, "Write as many ) as (."},
    {"condition-ignored-end", kWarning, "Take out what stands behind the condition."},
    {"condition-always-true", kWarning, "Compare with the value that is meant."},
    {"condition-always-false", kWarning, "Compare with a value that is possible."},
    {"condition-initial-value", kError,
     "Put the reference in single quotes, or give the variable a number to begin with."},
    {"page-no-copy", kError, "Add a page CopyProgress."},
    {"page-no-finish", kError, "Add a page with Special=\"Finish\" at the end."},
    {"page-no-register", kWarning, "Add a page RegisterApplication behind CopyProgress."},
    {"page-no-unregister", kWarning, "Add a page UnregisterApplication to UninstallDialogs."},
    {"page-no-uninstallation", kError,
     "Describe UninstallDialogs, with a page CopyProgress and a page Finish."},
    {"page-name-case", kError, "Write the name as the manual does."},
    {"page-name-near", kWarning, "Write the name as the manual does, or another one."},
    {"page-unreachable", kWarning, "Take it out, or correct the condition."},
    {"page-first-condition", kWarning, "Put a page without a condition in front of it."},
    {"page-no-way-on", kError, "Add a Button with Name=\"Next\", or Special=\"AutoNext\"."},
    {"page-waits", kWarning, "Leave Automated out where nobody can end the programs."},
    {"page-incomplete", kError, "Add what the manual asks of this page."},
    {"page-too-early", kError, "Move it behind the page CopyProgress."},
    {"page-condition", kWarning, "Give the page a Condition, so that it is left out after a failure."},
    {"frame-incomplete", kError, "Give the frame both a TaskList and SubDialogs."},
    {"frame-special", kError, "Add Special=\"HasSubDialogs\"."},
    {"task-without-page", kWarning, "Add a page of this name to SubDialogs."},
    {"page-without-task", kError, "Add a task of this name to TaskList."},
    {"retain-unknown", kWarning, "Name an element of the page."},
    {"trigger-incomplete", kError, "Add what the manual asks of a trigger of this type."},
    {"container-unknown", kError, "Describe a container of actions with this name."},
    {"container-unused", kWarning, "Take it out, or name it in a trigger."},
    {"action-invalid", kError, "Write Cancel, Help, or assignments such as [NAME]='value', separated by ;."},
    {"field-choices", kError, "Give as many texts in Content as there are choices."},
    {"field-in-uninstallation", kWarning, "Take it out: fields have no effect in an uninstallation."},
    {"element-in-uninstallation", kWarning,
     "Take it out: an uninstallation has no pictures and no documents."},
    {"password-recorded", kWarning, "Name the variable in InstallerExcludeVariables."},
    {"password-shown", kWarning, "Leave the variable of a password empty."},
    {"exclusion-unknown", kWarning, "Write the name exactly as the variable is declared."},
    {"alias-unknown", kError, "Pack the file by an FN with this Alias."},
    {"alias-repeated", kError, "Give each file an Alias of its own."},
    {"file-unused", kWarning, "Take it out, or give it a Dest."},
    {"payload-unused", kWarning, "Name the files in an FN, or move them out of the root."},
    {"file-missing", kError, "Put the file below the root, or correct its path."},
    {"file-outside", kError, "Name the file by its path below the root."},
    {"file-same-destination", kWarning, "Give the two Conditions that exclude each other."},
    {"file-not-expanded", kWarning, "Install large and binary files without ExpandVarsInFile."},
    {"path-relative", kError, "Begin the path with a variable that holds a directory."},
    {"path-empty", kWarning, "Give a directory, or take the attribute out."},
    {"path-dangerous", kError, "Name a directory of the product's own."},
    {"path-system", kWarning, "Begin the path with a variable, with a value for each system."},
    {"path-character", kError, "Write the path without it."},
    {"record-missing", kError, "Add InstallLogFile to Installation/Uninstall."},
    {"record-backup-missing", kWarning, "Add InstallBackupFile to Installation/Uninstall."},
    {"record-not-installed", kError, "Install it by an FN, at exactly this path."},
    {"record-outside", kWarning, "Put it into a directory of the product."},
    {"record-no-directory", kError, "Put it into a directory into which an FN installs a file."},
    {"record-not-removed", kError, "Name it in UninstallWildcards."},
    {"record-left", kWarning, "Name it in UninstallWildcards."},
    {"record-not-program", kWarning, "Add Executable=\"1\" to its FN."},
    {"file-not-removed", kError, "Name it in UninstallWildcards."},
    {"change-without-undo", kWarning, "Add a container PreUninstall that takes it back."},
    {"cleanup-outside", kWarning, "Clean up in directories of the product alone."},
    {"cleanup-everything", kWarning,
     "Name what the product itself makes: a pattern * takes the files of users, too."},
    {"cleanup-pattern", kError, "Write a pattern of names alone; Dest has the directory."},
    {"cleanup-excluded", kWarning, "Take the variable out of InstallerExcludeVariables, or use another one."},
    {"shortcut-symlink", kError, "Give the shortcut a Condition that holds on Linux alone."},
    {"shortcut-ending", kWarning, "Put the ending into a variable with a value for each system."},
    {"path-list-repeated", kWarning, "Add IsPath=\"1\", so that the directory isn't added twice."},
    {"path-list-replaced", kError, "Use Append: Replace takes what other programs need out of PATH."},
    {"registry-data", kError, "Write hexadecimal digits; for REG_BINARY pairs of them."},
    {"document-broken", kError, "Correct the document; packager text shows what is wrong."},
    {"document-loss", kWarning, "Write it in another way, or take another format."},
    {"icon-unreadable", kError, "Give a file of icons (ICO), or a square PNG of at most 256 by 256 pixels."},
    {"icon-sizes", kWarning, "Add pictures with sides of 16, 32, 48 and 256 pixels."},
    {"word-places", kError, "Write each place as the manual does, in any order."},
    {"word-repeated", kWarning, "Take it out."},
    {"image-unreadable", kError, "Give a picture in PNG, JPEG or raw pixels."},
};

}  // namespace finding_kinds

// One of the kinds above. A literal that isn't the name of one doesn't compile.
class FindingCode {
public:
    template <std::size_t Size>
    consteval FindingCode(const char (&literal)[Size])  // NOLINT(google-explicit-constructor)
        : kind_(std::ranges::find(finding_kinds::kAll, std::string_view(literal), &FindingKind::name)) {
        if (kind_ == std::end(finding_kinds::kAll)) {
            throw "there is no such finding: add it to the table, and to the manual";
        }
    }

    constexpr std::string_view name() const { return kind_->name; }
    constexpr Severity severity() const { return kind_->severity; }
    constexpr std::string_view hint() const { return kind_->hint; }

private:
    const FindingKind* kind_;
};
