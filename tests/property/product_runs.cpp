#include "product_runs.h"

#include <memory>
#include <vector>

#include "description/answers_file.h"
#include "fakes/fake_console.h"
#include "fakes/walking_ui.h"
#include "package/package_writer.h"
#include "wini/nested_sessions.h"
#include "wini/wini.h"

void packProduct(MemoryPlatform& machine, const ProductCase& product, const std::string& description,
                 const std::string& package) {
    std::vector<PackageFile> list;
    const auto add = [&](const std::string& name, const std::string& content) {
        machine.files.addFile("/kit/src/" + name, content);
        list.push_back({"/kit/src/" + name, name, name});
    };
    add("install.xml", description);
    for (const Item& item : product.items) {
        if (item.kind == ItemKind::kFile) {
            const std::string path = filePathOf(item);
            add(path.substr(path.rfind('/') + 1), installedContentOf(item));
        } else if (item.kind == ItemKind::kModifyFile) {
            add(item.name("change"), editScriptOf(item));
        } else if (item.kind == ItemKind::kCreateFile) {
            add(item.name("created"), createdContentOf(item));
        }
    }
    add("installer", "the installer's image");
    PackageOptions options;
    options.stripes = 1;
    options.level = 1;
    PackageWriter(machine.files).write(list, options, package);
}

bool runSession(platform::Platform platform, const std::string& path, std::uint32_t flags, int& outResult) {
    FakeConsole log;
    const DebugLog debugLog(log);
    SystemServices services(platform, debugLog);
    AnswersFile answers(platform.files);
    NestedSessions nestedSessions(debugLog);
    auto session =
        std::make_unique<Wini>(platform, services, answers, nestedSessions, debugLog, WiniArguments());
    WalkingUI ui(*session);
    if (session->loadCabinet(path.c_str(), 0, flags) != 0) {
        return false;
    }
    outResult = session->run(&ui, &log);
    if (outResult == 0 && session->hasErrors()) {
        outResult = -1;
    }
    const bool finished = session->isFinished();
    session->releaseSession();
    return finished;
}
