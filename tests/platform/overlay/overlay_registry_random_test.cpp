#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "platform/memory/memory_registry_rules.h"
#include "platform/overlay/overlay_registry.h"
#include "property/random_numbers.h"

namespace {

using platform::Registry;
using platform::RegistryRoot;
using platform::RegistryView;

constexpr RegistryRoot kRoot = RegistryRoot::kLocalMachine;

// The same operations on a copy of a registry in memory and on an overlay over that registry.
class Twins {
public:
    explicit Twins(std::uint64_t seed) : random_(seed) {
        for (MemoryRegistry* const registry : {&base_, &copy_}) {
            registry->addKey(kRoot, "A\\B\\C");
            registry->addKey(kRoot, "a\\d", RegistryView::k32Bit);
            registry->addText(kRoot, "A", "", "default");
            registry->addText(kRoot, "A\\b", "V1", "first");
            registry->addText(kRoot, "A\\b", "v2", "second");
            registry->addText(kRoot, "D", "v1", "third");
            registry->addText(kRoot, "ro\\k", "v1", "fixed");
            registry->setReadOnly("ro");
        }
        before_ = base_.everything();
    }

    void run() {
        for (int step = 0; step < 120 && !testing::Test::HasFailure(); ++step) {
            doSomething();
        }
        EXPECT_EQ(viewOf(copy_), viewOf(overlay_)) << log_;
        EXPECT_EQ(base_.everything(), before_);
        EXPECT_TRUE(base_.operations.empty());
        checkChanges();
    }

private:
    std::string pick(std::initializer_list<const char*> choices) {
        return *(choices.begin() + static_cast<std::ptrdiff_t>(random_.below(choices.size())));
    }

    template <typename Operate>
    void same(const std::string& what, Operate operate) {
        std::string copied;
        std::string overlaid;
        const int first = operate(static_cast<Registry&>(copy_), copied);
        const int second = operate(static_cast<Registry&>(overlay_), overlaid);
        log_ += what + " = " + std::to_string(first) + " " + copied + "\n";
        EXPECT_EQ(first, second) << log_;
        EXPECT_EQ(copied, overlaid) << log_;
    }

    void doSomething() {
        const std::string path =
            pick({"a", "A\\B", "a\\b\\c", "a\\\\b\\x", "D", "d\\E", "ro", "RO\\k", "ro\\new"});
        const std::string name = pick({"", "v1", "V2", "v3"});
        const RegistryView view = random_.oneIn(5) ? RegistryView::k32Bit : RegistryView::kNative;
        const std::string data = std::to_string(random_.below(100));
        switch (random_.below(6)) {
            case 0:
                return same("createKey " + path, [&](Registry& registry, std::string& out) {
                    int created = 0;
                    const int status = registry.createKey(kRoot, path, view, created);
                    out = std::to_string(created);
                    return status;
                });
            case 1:
                return same("deleteKey " + path, [&](Registry& registry, std::string&) {
                    return registry.deleteKey(kRoot, path, view);
                });
            case 2:
                return same("deleteValue " + path + ":" + name, [&](Registry& registry, std::string&) {
                    return registry.deleteValue(kRoot, path, view, name);
                });
            case 3:
                return same("readValue " + path + ":" + name, [&](Registry& registry, std::string& out) {
                    platform::RegistryValue value;
                    const int status = registry.readValue(kRoot, path, view, name, value);
                    out = value.data;
                    return status;
                });
            default:
                return same("writeValue " + path + ":" + name, [&](Registry& registry, std::string&) {
                    return registry.writeValue(kRoot, path, view, name, {platform::kRegString, data});
                });
        }
    }

    using View = std::map<std::string, std::string>;

    static std::string lower(std::string text) {
        std::ranges::transform(text, text.begin(), [](char c) { return static_cast<char>(std::tolower(c)); });
        return text;
    }

    static void addView(Registry& registry, const std::string& path, RegistryView view, View& ioView) {
        const std::string end = view == RegistryView::k32Bit ? " (32)" : "";
        ioView[lower(path) + end] = "key";
        std::vector<std::string> names;
        EXPECT_EQ(registry.listValues(kRoot, path, view, names), 0) << path;
        for (const std::string& name : names) {
            platform::RegistryValue value;
            EXPECT_EQ(registry.readValue(kRoot, path, view, name, value), 0);
            ioView[lower(path + ":" + name) + end] = value.data;
        }
        EXPECT_EQ(registry.listKeys(kRoot, path, view, names), 0) << path;
        for (const std::string& name : names) {
            addView(registry, path.empty() ? name : path + "\\" + name, view, ioView);
        }
    }
    static View viewOf(Registry& registry) {
        View view;
        addView(registry, "", RegistryView::kNative, view);
        addView(registry, "", RegistryView::k32Bit, view);
        return view;
    }

    // Done to the base, the changes make what the overlay shows.
    void checkChanges() {
        using What = platform::RegistryChange::What;
        View view = viewOf(base_);
        for (const platform::RegistryChange& change : overlay_.changes()) {
            const std::string end = change.key.view == RegistryView::k32Bit ? " (32)" : "";
            const std::string key = lower(change.key.path);
            if (change.valueName) {
                const std::string place = key + ":" + lower(*change.valueName) + end;
                EXPECT_EQ(view.contains(place), change.what != What::kCreated) << place << "\n" << log_;
                if (change.what == What::kDeleted) {
                    view.erase(place);
                } else {
                    view[place] = change.value.data;
                }
            } else if (change.what == What::kDeleted) {
                EXPECT_EQ(view.erase(key + end), 1U) << key << "\n" << log_;
                std::erase_if(view, [&](const auto& entry) {
                    return entry.first.starts_with(key + ":") &&
                           entry.first.ends_with(" (32)") == !end.empty();
                });
            } else {
                EXPECT_TRUE(view.emplace(key + end, "key").second) << key << "\n" << log_;
            }
        }
        EXPECT_EQ(view, viewOf(overlay_)) << log_;
    }

    RandomNumbers random_;
    MemoryRegistry base_;
    MemoryRegistry copy_;
    std::map<std::string, std::string> before_;
    MemoryRegistryRules rules_{base_};
    OverlayRegistry overlay_{base_, rules_};
    std::string log_;
};

TEST(OverlayRegistryRandomTest, DoesWhatTheMachineWouldDoAndLeavesItAsItWas) {
    for (std::uint64_t round = 0; round < 400 && !HasFailure(); ++round) {
        Twins(round).run();
    }
}

}  // namespace
