#pragma once

#include "engine/journaled_files.h"
#include "engine/journaled_firewall.h"
#include "engine/journaled_registry.h"
#include "engine/journaled_shell.h"
#include "platform/platform.h"

class RemovalJournal;

// A machine on which a removal can be taken back: each call that changes files, the registry, the firewall or
// the desktop is written to a journal first, and what it would destroy is kept. Everything else goes straight
// to the machine. A change that can't be written down isn't made; the call fails with the reason.
//
// What programs do that the removal starts isn't seen. What can't be kept at all stays: a link on another
// volume than the state directory.
class JournaledMachine {
public:
    // What `machine` refers to, and `journal`, which is open, outlive this object. One thread.
    JournaledMachine(const platform::Platform& machine, RemovalJournal& journal)
        : machine_(machine),
          files_(machine.files, machine.environment, journal),
          registry_(machine.registry, journal),
          firewall_(machine.firewall, journal),
          shell_(machine.shell, files_, journal) {}

    // Refers to this object.
    platform::Platform bundle() {
        return {files_,          registry_, machine_.processes, machine_.environment, machine_.console,
                machine_.events, shell_,    firewall_};
    }

private:
    platform::Platform machine_;
    JournaledFileSystem files_;
    JournaledRegistry registry_;
    JournaledFirewall firewall_;
    JournaledShellObjects shell_;
};
