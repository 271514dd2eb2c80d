#pragma once

#include <map>
#include <string>
#include <vector>

#include "engine/journaled_machine.h"
#include "engine/removal_journal.h"
#include "engine/removal_playback.h"
#include "engine/report.h"
#include "fakes/recording_ui.h"
#include "platform/memory/memory_platform.h"

// A desktop whose links are files.
class LinkWritingShell : public MemoryShellObjects {
public:
    explicit LinkWritingShell(MemoryFileSystem& files) : files_(files) {}
    int createLink(std::string_view linkPath, const platform::LinkDescription& link) override {
        return write(linkPath, "link to " + link.target);
    }
    int createUrlLink(std::string_view linkPath, std::string_view url) override {
        return write(linkPath, "link to " + std::string(url));
    }

private:
    int write(std::string_view path, const std::string& content) {
        if (linkError == 0) {
            files_.removeFile(path);
            files_.addFile(path, content);
        }
        return linkError;
    }

    MemoryFileSystem& files_;
};

// A machine with a bit of everything, the journal of a removal and the machine that the removal sees.
class RemovalScene {
public:
    using State = std::map<std::string, std::string>;

    RemovalScene() { fill(); }

    platform::Platform real() {
        return {machine.files,
                machine.registry,
                machine.processes,
                machine.environment,
                machine.console,
                machine.events,
                shell,
                machine.firewall};
    }
    // The machine that the removal sees; the first call opens the journal.
    platform::Platform removal() {
        if (journaled_ == nullptr) {
            EXPECT_EQ(journal.open(), 0);
            journaled_ = std::make_unique<JournaledMachine>(real(), journal);
        }
        return journaled_->bundle();
    }
    // Everything but the journal.
    State state();
    // As a later run does it, from what is on the disk.
    bool playBack();
    // The lines of what didn't come back.
    std::vector<std::string> notes() const { return ui.callsOf("addMessage"); }

    std::string journalFile() const { return journal.directory() + "/journal"; }

    MemoryPlatform machine;
    MemoryFileSystem& files = machine.files;
    LinkWritingShell shell{machine.files};
    RemovalJournal journal{machine.files, machine.environment};
    RecordingUI ui;
    Report report{&ui, nullptr};

private:
    void fill();

    std::unique_ptr<JournaledMachine> journaled_;
};

inline void RemovalScene::fill() {
    using platform::RegistryRoot;
    using platform::RegistryView;
    files.addFile("/app/file", "content");
    files.addFile("/app/other", "other content");
    files.addFile("/app/program", "code");
    files.makeExecutable("/app/program");
    files.addFile("/app/sub/deep/inner", "inner");
    files.addDirectory("/app/empty");
    files.addLink("/app/link", "/app/file");
    machine.registry.addText(RegistryRoot::kLocalMachine, "Software\\Demo", "Name", "value");
    machine.registry.addText(RegistryRoot::kLocalMachine, "Software\\Demo", "Second", "2");
    machine.registry.addText(RegistryRoot::kLocalMachine, "Software\\Demo", "Name", "value of 32 bits",
                             RegistryView::k32Bit);
    machine.firewall.applications["/app/program"] = "Demo";
    machine.firewall.specialApplications["/app/program"] = {"Demo", false, 2, "10.0.0.1"};
    machine.firewall.ports[{80, platform::FirewallProtocol::kTcp}] = "Web";
    files.clearOperations();
}

inline RemovalScene::State RemovalScene::state() {
    State all = files.everything();
    std::erase_if(all, [](const auto& entry) { return entry.first.starts_with("/var"); });
    all.merge(machine.registry.everything());
    for (const auto& [path, name] : machine.firewall.applications) {
        const platform::FirewallException special = machine.firewall.specialApplications[path];
        all["application " + path] = name + " " + std::to_string(special.enabled) + " " +
                                     std::to_string(special.scope) + " " + special.remoteAddresses;
    }
    for (const auto& [port, name] : machine.firewall.ports) {
        all["port " + std::to_string(port.first) +
            (port.second == platform::FirewallProtocol::kTcp ? " TCP" : " UDP")] = name;
    }
    all["firewall"] = machine.firewall.on ? "on" : "off";
    return all;
}

inline bool RemovalScene::playBack() {
    RemovalJournal later(machine.files, machine.environment);
    EXPECT_EQ(later.resume(journal.directory()), 0);
    return RemovalPlayback(real(), later, report).run();
}
