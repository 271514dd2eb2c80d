#include "checking/condition_scope.h"

#include "checking/check_bench.h"

namespace {

TEST(ConditionScope, ReachesDownToAllElementsWithin) {
    std::vector<bool> found;
    CheckBench bench([&](const CheckedParts& parts) {
        for (const std::int32_t node : parts.context.nodesOf("FN")) {
            found.push_back(hasConditionAround(parts.context, node));
        }
    });
    bench.findings(
        "<FileSet Name='A'><FN>a</FN><FN Condition='1==1'>b</FN></FileSet>"
        "<FileSet Name='B' Condition='1==1'><FN>c</FN></FileSet>");
    EXPECT_EQ(found, (std::vector<bool>{false, true, true}));
}

}  // namespace
