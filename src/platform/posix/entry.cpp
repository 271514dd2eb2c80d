// The entry point of each program. Not part of the platform library, so that test programs keep their own.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "platform/program.h"

namespace {

// A caller may have closed the standard streams. Their numbers must not go to files that are opened later:
// what is printed would end up in them. Output still fails, so that nobody waits for the answer to a question
// that was never shown.
bool occupyStandardStreams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (fcntl(stream, F_GETFD) >= 0 || errno != EBADF) {
            continue;
        }
        // The lowest free number is this stream's, because the ones below it are open.
        if (open("/dev/null", O_RDONLY) != stream) {
            return false;
        }
    }
    return true;
}

}  // namespace

int main(int count, char** arguments) {
    if (!occupyStandardStreams()) {
        return -1;
    }
    // What this program makes is for all users to read and for none but its owner to write, also when it is
    // started with a mask that hides or opens everything. Programs that it starts inherit this.
    umask(022);
    return programMain(std::vector<std::string>(arguments, arguments + count));
}
