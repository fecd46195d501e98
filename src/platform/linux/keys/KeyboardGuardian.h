#pragma once
// Owner of the guardian, the small program that undoes what Vantor left in the X server's keyboard when Vantor ends in
// the middle of a text. The typing thread.

#include <sys/types.h>

#include <filesystem>
#include <memory>

#include "platform/linux/keys/PendingKeyboardCleanup.h"

namespace vantor {

class KeyboardGuardian {
public:
    enum class Verdict { running, absent };

    // Its program is named `vantor-guardian`. An empty path: none.
    explicit KeyboardGuardian(std::filesystem::path program) : program_(std::move(program)) {}
    // Lets the guardian undo what is still noted, and go.
    ~KeyboardGuardian();
    KeyboardGuardian(const KeyboardGuardian&) = delete;
    KeyboardGuardian& operator=(const KeyboardGuardian&) = delete;

    // Starts it, or starts it again if it has ended. What it cannot guard is typed all the same.
    Verdict ensureRunning();
    // Where to note. Another place after each ensureRunning() and after letGo().
    [[nodiscard]] PendingKeyboardCleanup& pending() { return shared_ ? *shared_ : ownNotes_; }
    // Has it undo what is noted: true if there was a guardian to do it. Nothing is noted afterwards.
    bool letGo();

private:
    struct Unmap {
        void operator()(PendingKeyboardCleanup* pending) const;
    };
    class Descriptor {
    public:
        Descriptor() = default;
        explicit Descriptor(int number) : number_(number) {}
        ~Descriptor() { reset(); }
        Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
        Descriptor& operator=(Descriptor&& other) noexcept;
        void reset();
        int release();
        [[nodiscard]] int get() const { return number_; }

    private:
        int number_ = -1;
    };

    [[nodiscard]] bool isRunning();
    [[nodiscard]] bool start();
    [[nodiscard]] bool spawn(int reading, int notes);

    std::filesystem::path program_;
    pid_t process_ = 0;
    Descriptor pipe_;  // its writing end; the guardian sees it close
    std::unique_ptr<PendingKeyboardCleanup, Unmap> shared_;
    PendingKeyboardCleanup ownNotes_;  // without a guardian
};

// Where it lies for a program in this folder: beside it, or below the library folder of an installation.
[[nodiscard]] std::filesystem::path guardianBeside(const std::filesystem::path& folder);

}  // namespace vantor
