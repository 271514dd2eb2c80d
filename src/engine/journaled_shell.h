#pragma once

#include "platform/shell_objects.h"

class JournaledFileSystem;
class RemovalJournal;

// The desktop's objects on a machine on which a removal can be taken back: what a link file replaces is kept,
// and the environment is made known again when it has come back.
class JournaledShellObjects : public platform::ShellObjects {
public:
    // All are borrowed: the real one, the files that it works on, and a journal that is open.
    JournaledShellObjects(platform::ShellObjects& shell, JournaledFileSystem& files, RemovalJournal& journal)
        : shell_(shell), files_(files), journal_(journal) {}

    int createLink(std::string_view linkPath, const platform::LinkDescription& link) override;
    int createUrlLink(std::string_view linkPath, std::string_view url) override;
    // Fails: no removal makes one, and the journal couldn't tell it from a link of the user.
    int createSymlink(std::string_view /*linkPath*/, std::string_view /*target*/) override { return -1; }
    bool openDocument(std::string_view path) override { return shell_.openDocument(path); }
    bool openForUser(std::string_view path) override { return shell_.openForUser(path); }
    bool broadcastEnvironment() override;

private:
    template <typename Create>
    int writeLink(std::string_view linkPath, Create create);

    platform::ShellObjects& shell_;
    JournaledFileSystem& files_;
    RemovalJournal& journal_;
};
