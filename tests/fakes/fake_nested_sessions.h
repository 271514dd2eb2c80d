#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "contracts/nested_session.h"
#include "contracts/system_operations.h"
#include "fakes/fake_system_operations.h"
#include "platform/platform.h"

// Second sessions for which a test says what their product does; what they are asked is written down.
class FakeNestedSessions : public NestedSessionFactory {
public:
    std::vector<std::string> calls;
    std::string name = "Demo";
    ProductRecords records;
    bool isRemoved = true;  // the result of the removal
    std::string loadError;  // a text: loading fails with it
    std::string error;      // a text that a removal adds to the list of errors
    std::function<void(const platform::Platform& machine)> onUninstall = [](const platform::Platform&) {};
    std::function<void(const std::string& log)> onLoad = [](const std::string&) {};
    platform::FileSystem* files = nullptr;  // of the last session that was made

    std::unique_ptr<NestedSession> make(const platform::Platform& machine, InstallerUI*,
                                        std::vector<std::string>& errors) override {
        files = &machine.files;
        return std::make_unique<Session>(*this, machine, errors);
    }
    std::unique_ptr<SystemOperations> makeServices(const platform::Platform&) override {
        return std::make_unique<FakeSystemOperations>();
    }

private:
    class Session : public NestedSession {
    public:
        Session(FakeNestedSessions& owner, const platform::Platform& machine,
                std::vector<std::string>& errors)
            : owner_(owner), machine_(machine), errors_(errors) {}
        ~Session() override { owner_.calls.emplace_back("release"); }

        void load(const std::string& logPath) override {
            owner_.calls.push_back("load(" + logPath + ")");
            owner_.onLoad(logPath);
            if (!owner_.loadError.empty()) {
                throw InstallerError("%s", owner_.loadError.c_str());
            }
        }
        std::string productName() override { return owner_.name; }
        ProductRecords records() override { return owner_.records; }
        void setVariable(std::string_view name, std::string_view value) override {
            owner_.calls.push_back("setVariable(" + std::string(name) + ", " + std::string(value) + ")");
        }
        bool uninstall(const std::function<void(int)>& onProgress) override {
            owner_.calls.emplace_back("uninstall");
            if (onProgress) {
                onProgress(50);
            }
            owner_.onUninstall(machine_);
            if (!owner_.error.empty()) {
                errors_.push_back(owner_.error);
            }
            return owner_.isRemoved;
        }

    private:
        FakeNestedSessions& owner_;
        platform::Platform machine_;
        std::vector<std::string>& errors_;
    };
};
