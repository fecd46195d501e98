#include "platform/linux/services/SecretServiceKeychain.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "platform/linux/services/SecretService.h"

namespace vantor {

namespace {

using secretservice::Copy;

// After it was broken off, a question that still does not return is left to itself.
constexpr std::chrono::seconds grace{1};

struct Question {
    std::chrono::milliseconds patience;
    std::function<Copy(GCancellable* cancel)> ask;  // on a thread that may outlive the keychain
    std::function<void(const Copy& copy)> tell;
};

struct Unreference {
    void operator()(GCancellable* cancel) const { g_object_unref(cancel); }
};

// A question under way. Owned by the thread that asks and the one that waits.
struct Turn {
    std::unique_ptr<GCancellable, Unreference> cancel{g_cancellable_new()};
    std::optional<Copy> copy;  // under the keychain's mutex
};

}  // namespace

// Asks one question after the other, each on a thread of its own: a library call that never returns costs that thread
// and nothing else.
class SecretServiceKeychain::Worker {
public:
    Worker() : waiting_([this] { work(); }) {}
    ~Worker() {
        {
            const std::lock_guard lock(shared_->mutex);
            stopping_ = true;
            questions_.clear();
        }
        shared_->changed.notify_all();
        waiting_.join();
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    void post(Question question) {
        {
            const std::lock_guard lock(shared_->mutex);
            questions_.push_back(std::move(question));
        }
        shared_->changed.notify_all();
    }

    [[nodiscard]] bool idleWithin(std::chrono::milliseconds atMost) {
        std::unique_lock lock(shared_->mutex);
        return shared_->changed.wait_for(lock, atMost, [this] { return questions_.empty() && !asking_; });
    }

private:
    struct Shared {
        std::mutex mutex;
        std::condition_variable changed;
    };

    void work() {
        std::unique_lock lock(shared_->mutex);
        for (;;) {
            shared_->changed.wait(lock, [this] { return stopping_ || !questions_.empty(); });
            if (stopping_) return;
            const Question question = std::move(questions_.front());
            questions_.pop_front();
            asking_ = true;
            lock.unlock();
            const auto copy = answerTo(question);
            if (copy) question.tell(*copy);
            lock.lock();
            asking_ = false;
            shared_->changed.notify_all();
        }
    }

    // Nothing at the end of the keychain.
    [[nodiscard]] std::optional<Copy> answerTo(const Question& question) {
        const auto turn = std::make_shared<Turn>();
        std::thread asking([turn, shared = shared_, ask = question.ask] {
            Copy copy = ask(turn->cancel.get());
            const std::lock_guard lock(shared->mutex);
            turn->copy = std::move(copy);
            shared->changed.notify_all();
        });
        std::unique_lock lock(shared_->mutex);
        shared_->changed.wait_for(lock, question.patience, [&] { return stopping_ || turn->copy; });
        if (!turn->copy) {
            lock.unlock();
            g_cancellable_cancel(turn->cancel.get());
            lock.lock();
            shared_->changed.wait_for(lock, grace, [&] { return turn->copy.has_value(); });
        }
        turn->copy ? asking.join() : asking.detach();
        return stopping_ ? std::nullopt : std::optional(turn->copy.value_or(Copy{}));
    }

    std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
    // Under the shared mutex.
    std::deque<Question> questions_;
    bool asking_ = false;
    bool stopping_ = false;
    std::thread waiting_;  // last: it uses all of the above
};

SecretServiceKeychain::SecretServiceKeychain(MainThread& mainThread, Patience patience)
    : mainThread_(mainThread), patience_(patience), worker_(std::make_unique<Worker>()) {}

SecretServiceKeychain::~SecretServiceKeychain() = default;

void SecretServiceKeychain::copyMatching(const KeychainItem& item, Prompt prompt, Copied answer) {
    worker_->post({prompt == Prompt::allowed ? patience_.prompt : patience_.answer,
                   [item, prompt](GCancellable* cancel) { return secretservice::copyMatching(item, prompt, cancel); },
                   [this, answer = std::move(answer)](const Copy& copy) {
                       mainThread_.post([answer, copy] { answer(copy.status, copy.data); });
                   }});
}

void SecretServiceKeychain::replace(const KeychainItem& item, const std::string& data, Answered answer) {
    worker_->post({patience_.prompt,
                   [item, data](GCancellable* cancel) { return Copy{secretservice::replace(item, data, cancel), {}}; },
                   [this, answer = std::move(answer)](const Copy& copy) {
                       mainThread_.post([answer, status = copy.status] { answer(status); });
                   }});
}

bool SecretServiceKeychain::finish(std::chrono::milliseconds atMost) { return worker_->idleWithin(atMost); }

}  // namespace vantor
