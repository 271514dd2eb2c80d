#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "description/vocabulary.h"
#include "engine/alias_extractor.h"
#include "engine/changes/change.h"
#include "engine/changes/program_run.h"
#include "engine/changes/registry_change.h"
#include "engine/file_contents.h"

class ProductDescription;
class RunOutcome;
struct EngineParts;

// The small steps beyond copying files that a description asks for: programs, documents, single files and
// directories, the registry. They are in containers; whoever knows a container's name can have it run.
class AdditionalActions {
public:
    // Both outlive this object.
    AdditionalActions(const ChangeContext& context, const EngineParts& parts);

    // The tags of the actions, in the order in which they are compared.
    static std::vector<std::string_view> actionNames();

    // Runs every container of that name, in document order. An action that fails is only logged; false when
    // it was one that had to write into the registry. Throws InstallerError when a file can't be taken out
    // of the cabinet; the actions after it don't run then.
    bool run(std::string_view container);

private:
    // An action with its texts as they are to be used.
    struct Action {
        std::int32_t node = -1;
        std::uint32_t details = 0;
        std::uint32_t programFlags = 0;
        std::uint32_t pause = 0;  // milliseconds
        std::string path;
    };
    using Step = void (AdditionalActions::*)(const Action& action);
    struct Kind {
        vocabulary::ElementName tag;
        bool needsText;
        std::uint32_t details;  // that the kind itself asks for
        Step step;
    };
    static const Kind kKinds[];

    static const Kind* kindOf(std::string_view tag);
    void runAction(std::int32_t node);
    std::uint32_t readDetails(std::int32_t node);
    void readProgramFlags(Action& action);
    void showLogLine(std::int32_t node);
    std::string textOf(const Action& action, std::optional<std::string_view> text);
    std::string pathOf(const Action& action, std::optional<std::string_view> text);
    std::string destinationOf(const Action& action);
    unsigned fileModeOf(std::int32_t node);

    void openDocument(const Action& action);
    void openUrl(const Action& action);
    void open(const Action& action, const char* what);
    void runProgram(const Action& action);
    void copyFile(const Action& action);
    void changeRegistry(const Action& action);
    void removeFile(const Action& action);
    void removeDirectory(const Action& action);
    void createFile(const Action& action);

    ChangeContext context_;
    FileContents contents_;
    AliasExtractor extractor_;
    RegistryChange registry_;
    const ProductDescription& product_;
    ProgramRun programs_;
    RunOutcome* outcome_;  // null: nobody asks
    bool failed_ = false;
};
