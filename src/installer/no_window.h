#pragma once

#include "ui/generic_ui.h"
#include "ui/graphical_front_ends.h"

// Of a build without a toolkit.
class NoWindow : public GraphicalFrontEnds {
public:
    bool isAvailable(std::string& outReason) override {
        outReason = "this build has no window";
        return false;
    }
    std::unique_ptr<GenericUI> make(bool, AnswersFile&, DebugLog) override { return nullptr; }
};
