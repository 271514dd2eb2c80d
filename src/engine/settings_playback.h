#pragma once

#include <string_view>

#include "engine/removal_record.h"
#include "platform/firewall.h"
#include "platform/registry.h"

class Report;

// Takes back what a removal did to the registry and the firewall, one record at a time, the last one first.
// What has been changed since is left.
class SettingsPlayback {
public:
    // All are borrowed.
    SettingsPlayback(platform::Registry& registry, platform::Firewall& firewall, Report& report)
        : registry_(registry), firewall_(firewall), report_(report) {}

    // `record` is of a change to settings. True when nothing of it is left to take back; otherwise it has
    // been said why.
    bool takeBack(const RemovalRecord& record);

private:
    bool takeBackValue(const RemovalRecord& record);
    bool takeBackDeletedKey(const RemovalRecord& record);
    bool takeBackNewKey(const RemovalRecord& record);
    bool removeLevel(const RemovalRecord& record, std::string_view path);
    int writeMissing(const RemovalRecord& record, const std::vector<KeptValue>& present);
    bool takeBackException(const RemovalRecord& record);
    bool replaceException(const RemovalRecord& record, platform::FirewallProfile& profile);

    bool done(const RemovalRecord& record, int status);
    bool done(const RemovalRecord& record, const platform::FirewallOutcome& outcome);
    bool left(const RemovalRecord& record, std::string_view reason);

    platform::Registry& registry_;
    platform::Firewall& firewall_;
    Report& report_;
};
