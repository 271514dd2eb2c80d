#pragma once

#include <string>
#include <vector>

#include "packager/packager_output.h"

// Records what the tool would write.
class RecordedOutput : public PackagerOutput {
public:
    void print(std::string_view line) override { lines.emplace_back(line); }
    void warn(std::string_view line) override { errors.emplace_back(line); }
    void progress(std::string_view step, int percent) override {
        lastProgress = std::string(step) + " " + std::to_string(percent);
    }
    bool finish() override { return works; }

    std::vector<std::string> lines;
    std::vector<std::string> errors;
    std::string lastProgress;
    bool works = true;
};
