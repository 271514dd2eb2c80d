#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

// The person at whose desktop a program runs that sudo or pkexec gave administrator's rights.
namespace platform {

struct InvokingUser {
    uid_t id = 0;
    gid_t group = 0;
    std::vector<gid_t> groups;  // all of the user's, that one included
    std::string name;
    std::string home;
};

// None when this process doesn't run as root, was started by root itself, or the user has no entry in the
// system's list of users.
std::optional<InvokingUser> invokingUser();

// The variables of this process, with those that belong to a person exchanged for the user's: "NAME=value".
std::vector<std::string> environmentOf(const InvokingUser& user);

// Starts a program with the rights of the user, apart from the terminal and without waiting for it. It is
// looked for in PATH unless it has a separator. `words` begins with the program. False when it doesn't start.
bool startDetachedAs(const InvokingUser& user, std::vector<std::string> words);

}  // namespace platform
