#include "platform/linux/keys/KeyboardGuardian.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <new>
#include <utility>

namespace vantor {
namespace {

// Above the numbers that the guardian gets them as.
constexpr int firstOwnDescriptor = 16;
constexpr int endPatienceMilliseconds = 1000;

int movedUp(int descriptor) {
    const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, firstOwnDescriptor);
    close(descriptor);
    return moved;
}

}  // namespace

void KeyboardGuardian::Unmap::operator()(PendingKeyboardCleanup* pending) const {
    munmap(pending, sizeof(PendingKeyboardCleanup));
}

KeyboardGuardian::Descriptor& KeyboardGuardian::Descriptor::operator=(Descriptor&& other) noexcept {
    if (this != &other) {
        reset();
        number_ = other.release();
    }
    return *this;
}

void KeyboardGuardian::Descriptor::reset() {
    if (number_ >= 0) close(number_);
    number_ = -1;
}

int KeyboardGuardian::Descriptor::release() { return std::exchange(number_, -1); }

KeyboardGuardian::~KeyboardGuardian() { letGo(); }

bool KeyboardGuardian::isRunning() {
    if (process_ == 0) return false;
    if (waitpid(process_, nullptr, WNOHANG) == 0) return true;
    process_ = 0;
    return false;
}

KeyboardGuardian::Verdict KeyboardGuardian::ensureRunning() {
    if (isRunning()) return Verdict::running;
    pipe_.reset();
    shared_.reset();
    if (program_.empty() || !start()) {
        pipe_.reset();
        shared_.reset();
        return Verdict::absent;
    }
    return Verdict::running;
}

bool KeyboardGuardian::start() {
    const Descriptor notes(movedUp(memfd_create("vantor-keyboard", MFD_CLOEXEC)));
    if (notes.get() < 0 || ftruncate(notes.get(), sizeof(PendingKeyboardCleanup)) != 0) return false;
    void* memory = mmap(nullptr, sizeof(PendingKeyboardCleanup), PROT_READ | PROT_WRITE, MAP_SHARED, notes.get(), 0);
    if (memory == MAP_FAILED) return false;
    shared_.reset(new (memory) PendingKeyboardCleanup);

    // Closed on exec: another child that held the writing end would keep the guardian from seeing our end.
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return false;
    const Descriptor reading(movedUp(ends[0]));
    pipe_ = Descriptor(ends[1]);
    return reading.get() >= 0 && spawn(reading.get(), notes.get());
}

bool KeyboardGuardian::spawn(int reading, int notes) {
    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&files);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_adddup2(&files, reading, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, notes, 3);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&files, 4);
    posix_spawn_file_actions_addchdir_np(&files, "/");
    // A session of its own: what is sent to our group or terminal does not reach it. What would end it all the same is
    // blocked until it ignores it.
    sigset_t ending;
    sigset_t all;
    sigemptyset(&ending);
    for (const int each : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) sigaddset(&ending, each);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &ending);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    std::string program = std::filesystem::absolute(program_).string();
    std::array<char*, 2> arguments = {program.data(), nullptr};
    const int failure = posix_spawn(&process_, program.c_str(), &files, &attributes, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    posix_spawnattr_destroy(&attributes);
    if (failure != 0) process_ = 0;
    return failure == 0;
}

bool KeyboardGuardian::letGo() {
    const bool guarded = isRunning();
    pipe_.reset();
    if (guarded) {
        // So that it leaves no dead child behind; it needs a moment only, and is not waited for beyond that.
        const Descriptor end(static_cast<int>(syscall(SYS_pidfd_open, process_, 0)));
        pollfd ended = {end.get(), POLLIN, 0};
        if (end.get() >= 0) poll(&ended, 1, endPatienceMilliseconds);
        waitpid(process_, nullptr, WNOHANG);
    }
    process_ = 0;
    shared_.reset();
    return guarded;
}

std::filesystem::path guardianBeside(const std::filesystem::path& folder) {
    constexpr auto name = "vantor-guardian";
    std::error_code absent;
    return std::filesystem::exists(folder / name, absent) ? folder / name : folder / "../lib/vantor" / name;
}

}  // namespace vantor
