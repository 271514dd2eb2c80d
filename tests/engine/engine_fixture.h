#pragma once

#include <string>
#include <vector>

#include "description/control_variables.h"
#include "description/description_fixture.h"
#include "description/file_sets.h"
#include "description/product_description.h"
#include "description/variable_exclusions.h"
#include "engine/action_log_writer.h"
#include "engine/engine_parts.h"
#include "engine/report.h"
#include "fakes/installing_system.h"
#include "fakes/recording_ui.h"
#include "package/cabinet.h"
#include "package/package_writer.h"
#include "platform/memory/memory_platform.h"
#include "platform/written_path.h"
#include "support/p_file_console.h"

using platform::writtenPath;

// A product with its package, on a machine in memory.
class EngineTest : public DescriptionTest {
protected:
    struct Packed {
        std::string alias;
        std::string name;
        std::string content;
    };

    EngineTest() { files_.addDirectory("/tmp"); }

    // Puts files into the cabinet, under their alias and their name there.
    void pack(const std::vector<Packed>& entries) {
        std::vector<PackageFile> list;
        for (const Packed& entry : entries) {
            const std::string source = "/src/" + std::to_string(list.size());
            files_.addFile(source, entry.content);
            list.push_back({source, entry.name, entry.alias});
        }
        PackageOptions options;
        options.stripes = 1;
        options.level = 1;
        PackageWriter(files_).write(list, options, "/package");
        ASSERT_EQ(cabinet_.load("/package", 0), Cabinet::LoadResult::kLoaded);
        files_.clearOperations();
        log_.clear();
    }

    // Parses the description and reads its files.
    void describe(const std::string& content) {
        parse("<TandrelGroupInstallation>" + content + "</TandrelGroupInstallation>");
        fileSets_.readFileSets([this](const std::string& alias) {
            const std::optional<std::int32_t> index = cabinet_.findAlias(alias);
            return index ? static_cast<std::int32_t>(cabinet_.entry(*index).fileSize()) : 0;
        });
        controls_.read(document_, console_);
        expressions_.setPathVariables(PathVariables(document_));
        log_.clear();
    }
    // Runs a job with a report of its own.
    template <typename Job>
    auto report(Job&& job) {
        Report report(&ui_, &errors_);
        return job(report);
    }

    MemoryPlatform machine_;
    MemoryFileSystem& files_ = machine_.files;
    InstallingSystem system_{files_};
    RecordingUI ui_;
    ErrorList errors_;
    Report report_{&ui_, &errors_};
    Cabinet cabinet_{files_, DebugLog()};
    ProductDescription product_{document_, expressions_};
    FileSets fileSets_{document_, expressions_};
    ControlVariables controls_;
    VariableExclusions exclusions_;
    EngineParts parts_{{document_, expressions_, variables_, product_, fileSets_, controls_, exclusions_},
                       cabinet_,
                       machine_.bundle(),
                       system_,
                       console_};
};
