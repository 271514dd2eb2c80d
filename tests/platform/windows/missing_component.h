#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/registry.h"

// While it lives, the system can't load the component of this class ("{...}") any more.
class MissingComponent {
public:
    explicit MissingComponent(const std::string& classId) : key_("CLSID\\" + classId + "\\InprocServer32") {
        EXPECT_EQ(registry_.readValue(kRoot, key_.c_str(), kView, "", before_), 0);
        EXPECT_EQ(registry_.writeValue(kRoot, key_.c_str(), kView, "",
                                       {platform::kRegString, "C:\\none\\none.dll"}),
                  0);
    }
    ~MissingComponent() { EXPECT_EQ(registry_.writeValue(kRoot, key_.c_str(), kView, "", before_), 0); }
    MissingComponent(const MissingComponent&) = delete;
    MissingComponent& operator=(const MissingComponent&) = delete;

private:
    static constexpr auto kRoot = platform::RegistryRoot::kClassesRoot;
    static constexpr auto kView = platform::RegistryView::kNative;

    const std::string key_;
    platform::RegistryValue before_;
    platform::Registry& registry_ = platform::systemRegistry();
};
