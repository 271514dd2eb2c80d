#pragma once

#include <string>
#include <vector>

#include "description/description_fixture.h"
#include "engine/action_log_writer.h"
#include "engine/changes/change.h"
#include "engine/description_tags.h"
#include "engine/report.h"
#include "fakes/fake_system_operations.h"
#include "fakes/recording_ui.h"
#include "platform/memory/memory_file_system.h"
#include "platform/memory/memory_platform.h"
#include "platform/written_path.h"
#include "support/p_file_console.h"

using platform::writtenPath;

// A description, a machine in memory that it changes, and the action log and the front end that hear of it.
class ChangeTest : public DescriptionTest {
protected:
    ChangeTest() {
        logDisk_.addDirectory("/tmp");
        writer_.openNew("/tmp/log");
    }

    void describe(const std::string& content) {
        parse("<TandrelGroupInstallation>" + content + "</TandrelGroupInstallation>");
        expressions_.setPathVariables(PathVariables(document_));
        log_.clear();
    }

    // The records so far, each with its line end.
    std::string records() const { return logDisk_.content("/tmp/log"); }

    // Compares what the front end was shown since the last time, without the reasons of failures: lines that
    // were added without a flush.
    void expectLines(const std::vector<std::string>& lines) {
        std::vector<std::string> calls;
        for (const std::string& line : lines) {
            calls.push_back("addFileLine(\"" + line + "\", 0)");
        }
        std::vector<std::string> shown = ui_.take();
        std::erase_if(shown, [](const std::string& call) { return call.starts_with("addMessage"); });
        EXPECT_EQ(shown, calls);
    }
    // The reasons so far.
    std::vector<std::string> reasons() const { return ui_.callsOf("addMessage"); }

    MemoryPlatform machine_;
    FakeSystemOperations system_;
    RecordingUI ui_;
    ErrorList errors_;
    Report report_{&ui_, &errors_};
    // The log has a disk of its own, so that the machine's holds the product's files alone.
    MemoryFileSystem logDisk_;
    PFileConsole logFile_{logDisk_};
    ActionLogWriter writer_{logFile_};
    DescriptionTags tags_{document_, expressions_};
    ChangeContext context_{machine_.bundle(), system_, tags_, writer_, report_, console_};
};
