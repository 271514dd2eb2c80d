#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/description_tags.h"

class SystemOperations;

// The programs that must not run while the product is changed: a page of the description names some to stop
// and some to look for.
class RunningPrograms {
public:
    struct Program {
        std::string name;
        bool isRunning = false;
    };
    // Runs the additional actions of a container.
    using RunActions = std::function<void(std::string_view container)>;

    // `system` outlives this object.
    RunningPrograms(DescriptionTags tags, SystemOperations& system) : tags_(tags), system_(system) {}

    // Carries out the children of a page's element whose condition holds, in their order: stops programs, has
    // actions run, and notes which programs to look for. What an earlier page noted is forgotten.
    void enterPage(std::int32_t page, const RunActions& runActions);

    // The programs that were noted, in their order, and which of them run now.
    std::vector<Program> look();

private:
    struct Noted {
        std::string name;
        std::string directory;  // empty: a program from anywhere counts
    };

    void carryOut(std::int32_t node, const RunActions& runActions);
    std::string directoryOf(std::int32_t node);

    DescriptionTags tags_;
    SystemOperations& system_;
    std::vector<Noted> noted_;
};
