#pragma once

#include "engine/tag_context.h"
#include "engine_fixture.h"
#include "fakes/fake_system_modifications.h"

// Walkers of the description's tags, on changes that exist on paper only, with an action log on the disk in
// memory.
class TagsTest : public EngineTest {
protected:
    TagsTest() { writer_.openNew("/tmp/log"); }

    // The records so far.
    std::string records() const { return files_.content("/tmp/log"); }

    FakeSystemModifications changes_;
    ActionLogWriter writer_{installLog_};
    ErrorList errors_;
    DescriptionTags tags_{document_, expressions_};
    TagContext context_{tags_, changes_, writer_, errors_, console_};
};
