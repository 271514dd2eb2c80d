#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/changes/record_look.h"
#include "engine/product_state.h"
#include "platform/memory/memory_platform.h"

// A looker on a machine in memory.
class LookTest : public testing::Test {
protected:
    using Make = std::unique_ptr<RecordLooker> (*)(const LookContext& context);

    // One record, and what its change was going to replace.
    struct Line {
        std::string fields;
        std::string former;
    };

    // The looks at the records of one log, with the places that the machine has now.
    std::vector<RecordLook> lookAtAll(Make make, const std::vector<Line>& lines) {
        if (looker_ == nullptr) {
            looker_ = make(context_);
            for (const Line& line : lines) {
                looker_->expect({"", line.fields, line.former});
            }
        }
        looker_->beginWalk();
        std::vector<RecordLook> looks;
        for (const Line& line : lines) {
            looker_->look({"", line.fields, line.former}, looks);
        }
        return looks;
    }
    // Of a log of its own with one record, which made one thing.
    RecordLook lookAt(Make make, const std::string& fields, const std::string& former = "") {
        looker_.reset();
        const std::vector<RecordLook> looks = lookAtAll(make, {{fields, former}});
        EXPECT_EQ(looks.size(), 1U) << fields;
        return looks.empty() ? RecordLook{} : looks.front();
    }
    PlaceState stateOf(Make make, const std::string& fields, const std::string& former = "") {
        return lookAt(make, fields, former).state;
    }
    std::vector<PlaceState> statesOf(Make make, const std::vector<Line>& lines) {
        std::vector<PlaceState> states;
        for (const RecordLook& look : lookAtAll(make, lines)) {
            states.push_back(look.state);
        }
        return states;
    }
    static std::vector<std::string> namesOf(const std::vector<RecordLook>& looks) {
        std::vector<std::string> names;
        for (const RecordLook& look : looks) {
            names.push_back(look.name);
        }
        return names;
    }

    MemoryPlatform machine_;
    WrittenSums written_;
    LookContext context_{machine_.bundle(), written_};
    std::unique_ptr<RecordLooker> looker_;
};
