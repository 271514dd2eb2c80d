#pragma once

#include <memory>

#include "engine/changes/record_look.h"

// The looks at settings of the system. The context's parts outlive the results.

// ENV. Records keep no value that was set, so any value but an earlier one counts as made; added entries are
// looked for in the list.
std::unique_ptr<RecordLooker> makeEnvironmentLooker(const LookContext& context);

// REGKEY, each level of it, the deepest first.
std::unique_ptr<RecordLooker> makeRegistryKeyLooker(const LookContext& context);

// REGVAL. Its record doesn't keep the value, so any but the earlier one counts as made.
std::unique_ptr<RecordLooker> makeRegistryValueLooker(const LookContext& context);

// FIREWALL, each protocol of a port.
std::unique_ptr<RecordLooker> makeFirewallLooker(const LookContext& context);
