// vantor-guardian: waits until Vantor ends, however that happens, and then undoes what it left in the X server's
// keyboard. Vantor starts it with the reading end of a pipe as standard input, and the shared notes as descriptor 3.

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>

#include "platform/linux/keys/KeyboardUndo.h"

namespace vantor {
namespace {

constexpr int endOfVantor = STDIN_FILENO;
constexpr int notes = 3;
constexpr int misuseStatus = 2;
constexpr int failureStatus = 1;

const PendingKeyboardCleanup* sharedNotes() {
    struct stat status{};
    if (fstat(notes, &status) != 0 || status.st_size < static_cast<off_t>(sizeof(PendingKeyboardCleanup)))
        return nullptr;
    void* memory = mmap(nullptr, sizeof(PendingKeyboardCleanup), PROT_READ, MAP_SHARED, notes, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<const PendingKeyboardCleanup*>(memory);
}

// Nothing is ever written into the pipe.
void awaitEnd() {
    char byte = 0;
    while (true) {
        const auto count = read(endOfVantor, &byte, 1);
        if (count == 0 || (count < 0 && errno != EINTR)) return;
    }
}

// Only now: an idle connection would be woken by every change of the keyboard's mapping.
UndoVerdict undo(const PendingKeyboardCleanup& pending) {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const auto verdict = undoKeyboard(connection, pending);
    xcb_disconnect(connection);
    return verdict;
}

int guard() {
    // What ends a whole session or process group must not end the one who clears up after it.
    for (const int each : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) std::signal(each, SIG_IGN);
    const PendingKeyboardCleanup* pending = sharedNotes();
    if (!pending) return misuseStatus;
    awaitEnd();
    if (!pending->hasAny()) return 0;
    // A server that is full for a moment; one that is gone has kept nothing.
    constexpr timespec between = {0, 200000000};
    for (int tries = 0; tries < 5; ++tries) {
        if (undo(*pending) == UndoVerdict::undone) return 0;
        nanosleep(&between, nullptr);
    }
    return failureStatus;
}

}  // namespace
}  // namespace vantor

int main() { return vantor::guard(); }
