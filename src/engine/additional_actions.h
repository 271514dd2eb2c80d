#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/directory_remover.h"
#include "engine/registry_tags.h"
#include "engine/tag_context.h"

class AliasExtractor;
class SystemOperations;

// The small steps beyond copying files that a description asks for: programs, documents, single files and
// directories, the registry. They stand in containers; whoever knows a container's name can have it run.
class AdditionalActions {
public:
    struct Parts {
        TagContext context;
        const ProductDescription& product;
        AliasExtractor& extractor;
        SystemOperations& system;
        platform::FileSystem& files;
    };

    explicit AdditionalActions(Parts parts);

    // The tags of the actions, in the order in which they are compared.
    static std::vector<std::string_view> actionNames();

    // Runs every container of that name, in document order. -1 for null, else 0: an action that fails is told
    // in the log alone. `ui` may be null. Throws InstallerError when a file can't be taken out of the
    // cabinet; the actions behind it don't run then.
    int runAdditionalActions(InstallerUI* ui, const char* container);

private:
    // An action with its texts as they are to be used.
    struct Action {
        std::int32_t node = -1;
        std::uint32_t details = 0;
        std::uint32_t programFlags = 0;
        std::uint32_t delay = 0;  // milliseconds
        std::string path;
    };
    using Step = void (AdditionalActions::*)(InstallerUI* ui, const Action& action);
    struct Kind {
        const char* tag;
        bool needsText;
        std::uint32_t details;  // that the kind itself asks for
        Step step;
    };
    static const Kind kKinds[];

    static const Kind* kindOf(const char* tag);
    void runAction(InstallerUI* ui, std::int32_t node);
    std::uint32_t readDetails(std::int32_t node);
    void readProgramFlags(Action& action);
    void showLogLine(InstallerUI* ui, std::int32_t node);
    std::string pathOf(const Action& action, const char* text);
    std::string textOf(const Action& action, const char* text);
    std::string destinationOf(const Action& action);
    int fileModeOf(std::int32_t node);

    void openDocument(InstallerUI* ui, const Action& action);
    void openUrl(InstallerUI* ui, const Action& action);
    void open(const Action& action, const char* what);
    void runProgram(InstallerUI* ui, const Action& action);
    void copyFile(InstallerUI* ui, const Action& action);
    void changeRegistry(InstallerUI* ui, const Action& action);
    void removeFile(InstallerUI* ui, const Action& action);
    void removeDirectory(InstallerUI* ui, const Action& action);
    void createFile(InstallerUI* ui, const Action& action);

    TagContext context_;
    AliasExtractor& extractor_;
    SystemOperations& system_;
    platform::FileSystem& files_;
    RegistryTags registry_;
    DirectoryRemover directories_;
};
