#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "description/wizard_words.h"

class Expressions;
class PXML;

// The product's texts, as the description gives them. Nothing where the element or its text is missing.
class ProductDescription {
public:
    static constexpr std::size_t kTextLimit = 1559;     // bytes of an expanded path
    static constexpr std::size_t kCommandLimit = 4095;  // bytes of the expanded uninstall command
    static constexpr std::string_view kUnknownTitle = "Unknown title";

    // Both outlive this object.
    ProductDescription(const PXML& description, Expressions& expressions)
        : description_(description), expressions_(expressions), words_(description) {}

    // Whether the description has the element ProductDesc.
    bool exists() const;

    std::optional<std::string> fullName() const;
    std::optional<std::string> majorVersion() const;
    std::optional<std::string> publisher() const;
    // The line that the console frames at the start, each for its kind of run.
    std::optional<std::string> banner() const;
    std::optional<std::string> uninstallBanner() const;
    std::optional<std::string> website() const;
    std::optional<std::string> supportEmail() const;
    std::optional<std::string> installHelpUrl() const;
    // Three numbers joined by ".". Nothing when one is missing.
    std::optional<std::string> version() const;
    // The same, but with the numbers before the first one that is missing, and the "." after them.
    std::string versionSoFar() const;
    // The description's title, or full name and version. Nothing when there is no full name; the title is
    // then kUnknownTitle where one has to be shown.
    std::optional<std::string> title() const;

    const WizardWords& words() const { return words_; }

    // Paths, with their variables expanded. Also nothing where the expansion gives nothing.
    std::optional<std::string> installLogFile() const;
    std::optional<std::string> installBackupFile() const;
    std::optional<std::string> uninstallCommand() const;
    std::optional<std::string> uninstallXmlFile() const;
    // Whether there is a text for the path with this element, "InstallLogFile" for instance, even one whose
    // expansion gives nothing.
    bool givesPath(std::string_view element) const;

private:
    std::optional<std::string> plain(std::string_view path) const;
    std::optional<std::string> expanded(std::string_view path, std::size_t limit = kTextLimit) const;

    const PXML& description_;
    Expressions& expressions_;
    WizardWords words_;
};
