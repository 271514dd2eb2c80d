#pragma once

#include <optional>
#include <string>

class PXML;

// What the properties of a Windows setup show, as given in the description. A missing text is empty.
struct SetupIdentity {
    std::string fullName;
    std::string title;  // the full name where the description has none
    std::string version;
    std::string publisher;
    std::string copyright;
    std::string icon;  // the alias of a packed file
};

// Nothing for a description without publisher, copyright and icon: its setups keep what the image has.
std::optional<SetupIdentity> setupIdentityOf(const PXML& description);
