#pragma once

#include <string>
#include <string_view>

// The desktop's own objects: links to programs and pages, and the programs that open documents.
namespace platform {

// What a link starts. Empty texts are left out; the icon is the first of its file.
struct LinkDescription {
    std::string target;
    std::string description;
    std::string arguments;
    std::string workDirectory;
    std::string iconPath;
};

class ShellObjects {
public:
    virtual ~ShellObjects() = default;

    // Make a link file at exactly `linkPath`, over a file that is there; its directory exists. 0 or the
    // system's error.
    // Windows: a shell link, an Internet shortcut. Linux: a desktop entry (Desktop Entry Specification 1.5),
    // put in place in one step; a link of the file system is replaced, not followed.
    virtual int createLink(std::string_view linkPath, const LinkDescription& link) = 0;
    virtual int createUrlLink(std::string_view linkPath, std::string_view url) = 0;
    // The same with a symbolic link, whose text is `target` with this system's separators; it need not lead
    // anywhere. Fails on Windows.
    virtual int createSymlink(std::string_view linkPath, std::string_view target) = 0;

    // Hands a document, program or URL to its default program and doesn't wait. False when there is none.
    // With the user's own rights where openForUser can. On Windows a name without a directory is looked for
    // in the system's directory and PATH.
    virtual bool openDocument(std::string_view path) = 0;

    // The same for a process with raised rights, but with those of the user at whose desktop it runs: on
    // Windows by that desktop's shell, on Linux as the user who called sudo or pkexec. False, with nothing
    // opened, when the rights aren't raised, the system doesn't offer it, or there is nothing to open.
    virtual bool openForUser(std::string_view path) = 0;

    // Makes known that the system's environment has changed. False on failure.
    // Windows: the broadcast of the changed setting to the programs that run; true. Linux: its variables are
    // written as a script that shells read at the next login.
    virtual bool broadcastEnvironment() = 0;
};

ShellObjects& systemShellObjects();

}  // namespace platform
