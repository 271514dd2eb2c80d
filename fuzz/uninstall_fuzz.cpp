// Uninstalls from anything as the records of an action log, on a machine in memory: it must come to its end,
// and what no record names must stay.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "description/answers_file.h"
#include "fakes/fake_platform.h"
#include "fakes/walking_ui.h"
#include "session/session_flags.h"
#include "support/p_console.h"
#include "wini/nested_sessions.h"
#include "wini/wini.h"

namespace {

constexpr char kHead[] = "/kit/product.xml\r\n/kit/backup.bin\r\nNUMVARS\t0\r\n";
constexpr char kDescription[] =
    "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname><MajorVersion>1</MajorVersion>"
    "<MinorVersion>2</MinorVersion><MinestVersion>3</MinestVersion></ProductDesc>"
    "<UninstallDialogs><Bye/><CopyProgress/><End Special='Finish'/></UninstallDialogs><DefValues/>"
    "</TandrelGroupInstallation>";
// A name that no input hits upon.
constexpr char kForeign[] = "/home/someone/4f1c2a90-7d13-letter.txt";

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FakePlatform machine;
    machine.files.addDirectory("/tmp");
    machine.files.addFile(kForeign, "dear");
    machine.files.addFile("/app/text.txt", "alpha\nadded\n");
    machine.files.addFile("/app/change", "1\nalpha\n1\nadded\n");
    machine.files.addFile("/app/set.ini", "[main]\nkey=value\n");
    machine.files.addFile("/kit/product.xml", kDescription);
    machine.files.addFile("/kit/log", kHead + std::string(reinterpret_cast<const char*>(data), size));
    const DebugLog debugLog;
    SystemServices services(machine.bundle(), debugLog);
    AnswersFile answers(machine.files);
    NestedSessions nestedSessions(debugLog);
    Wini session(machine.bundle(), services, answers, nestedSessions, debugLog, WiniArguments());
    WalkingUI ui(session);
    PConsole silent;
    silent.setEnabled(false);
    require(session.loadCabinet("/kit/log", 0, kSessionActionLog) == 0);
    session.run(&ui, &silent);
    require(session.isFinished());
    session.releaseSession();
    require(machine.files.content(kForeign) == "dear");
    return 0;
}
