#pragma once

#include <memory>

#include "engine/removal_journal.h"
#include "platform/firewall.h"

// A firewall on which a removal can be taken back: an exception is written to the journal before it is added
// or removed. One that can't be read is marked so, and doesn't come back.
class JournaledFirewall : public platform::Firewall {
public:
    // Both are borrowed, also by the profiles: the real one, and a journal that is open.
    JournaledFirewall(platform::Firewall& firewall, RemovalJournal& journal)
        : firewall_(firewall), journal_(journal) {}

    platform::FirewallOutcome connect(std::unique_ptr<platform::FirewallProfile>& outProfile) override;

private:
    class Profile;

    platform::Firewall& firewall_;
    RemovalJournal& journal_;
};

// An exception as a journal keeps it, and back.
KeptValue keptException(const platform::FirewallException& exception);
platform::FirewallException exceptionOf(const KeptValue& kept);
