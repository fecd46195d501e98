#pragma once
// The one generic loader of a JSON resource and the records decoded from it. The records live on the session queue:
// `fetch` and `assign` may be called from any thread and are one posted task each, in call order; what is marked
// "queue" is called on the session queue only. Everybody else reads snapshots. The loader outlives the queue's last
// task.
//
// The HTTP status is never looked at: an error page is a body that does not decode.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/TaskQueue.h"
#include "data/Decoder.h"
#include "data/ResourceUrl.h"
#include "data/SettingKeys.h"
#include "platform/Defaults.h"
#include "platform/UrlSession.h"

namespace vantor {

// A record of a loader: its `id`, an integer or a text, is its identity there.
template <typename T>
concept APIElement = requires(const T& record) { record.id; };

[[nodiscard]] inline std::string identityText(std::int64_t id) { return std::to_string(id); }
[[nodiscard]] inline std::string identityText(const std::string& id) { return id; }
template <APIElement T>
[[nodiscard]] std::string identityText(const T& record) {
    return identityText(record.id);
}

// What all loaders of an application share; the references outlive them.
struct LoaderContext {
    TaskQueue& queue;
    UrlSession& session;
    const Defaults& defaults;
    std::function<void(const std::string& line)> printLine;  // queue
};

template <typename T>
class JsonFetchable {
public:
    using Array = std::vector<T>;
    // Takes the complete list, returns the one that is to replace it. Runs on the queue.
    using Completion = std::function<Array(Array)>;

    struct Snapshot {
        std::shared_ptr<const Array> array;  // never null
        std::int64_t activeRequests = 0;     // above 0 while a load is under way
    };

    // typeName: the record's name in printed lines.
    JsonFetchable(LoaderContext context, std::string typeName, std::string fromUrl, bool authenticated,
                  bool arrayEndpoint)
        : context_(std::move(context)),
          typeName_(std::move(typeName)),
          fromUrl_(std::move(fromUrl)),
          authenticated_(authenticated),
          arrayEndpoint_(arrayEndpoint) {}
    JsonFetchable(const JsonFetchable&) = delete;
    JsonFetchable& operator=(const JsonFetchable&) = delete;

    // Without ids the whole resource is asked for. Without a key an authenticated loader does nothing and the
    // completion is never called.
    void fetch(std::vector<std::int64_t> ids, Completion completion = {}) {
        context_.queue.post(
            [this, ids = std::move(ids), completion = std::move(completion)] { fetchNow(ids, completion); });
    }
    void assign(Array array) {
        context_.queue.post([this, array = std::move(array)]() mutable { assignNow(std::move(array)); });
    }
    [[nodiscard]] Snapshot snapshot() const {
        const std::lock_guard lock(mutex_);
        return published_;
    }
    // Added before the first fetch; each runs on the queue after every change of the snapshot.
    void onChange(std::function<void()> handler) { changed_.push_back(std::move(handler)); }

    // Queue: for completions, whose steps happen at once and in order.
    void fetchNow(const std::vector<std::int64_t>& ids, const Completion& completion) {
        const std::vector<std::string> wanted = notHeld(ids);
        const std::string key = context_.defaults.get<std::string>(settings::apiKey).value_or("");
        if (authenticated_ && key.empty()) return;

        const std::vector<std::string> urls = batchUrls(wanted);
        activeRequests_ = static_cast<std::int64_t>(urls.size());
        publish();
        for (const std::string& url : urls) {
            if (!isValidUrl(url)) {
                std::fprintf(stderr, "%s is no address\n", url.c_str());
                std::abort();
            }
            UrlRequest request;
            request.url = url;
            if (authenticated_) request.headers = {{"Authorization", "Bearer " + key}};
            context_.session.dataTask(std::move(request), [this, completion](const std::optional<std::string>& body) {
                handle(body, completion);
            });
        }
    }
    void assignNow(Array array) {
        array_ = std::make_shared<const Array>(std::move(array));
        publish();
    }
    [[nodiscard]] const Array& array() const { return *array_; }
    [[nodiscard]] bool idle() const { return activeRequests_ <= 0; }

private:
    static constexpr std::size_t batchSize = 200;  // the web API's limit of ids in one request

    [[nodiscard]] std::vector<std::string> notHeld(const std::vector<std::int64_t>& ids) const {
        std::set<std::string> held;
        if (!ids.empty())
            for (const T& record : *array_) held.insert(identityText(record));
        std::vector<std::string> wanted;
        for (const std::int64_t id : ids)
            if (std::string text = identityText(id); !held.contains(text)) wanted.push_back(std::move(text));
        return wanted;
    }

    // Nothing wanted asks for the bare resource, on purpose also when every requested id is held already.
    [[nodiscard]] std::vector<std::string> batchUrls(const std::vector<std::string>& ids) const {
        if (ids.empty()) return {fromUrl_};
        std::vector<std::string> urls;
        for (std::size_t i = 0; i < ids.size(); ++i) {
            if (i % batchSize == 0) {
                urls.push_back(fromUrl_ + "?ids=" + ids[i]);
            } else {
                urls.back() += "," + ids[i];
            }
        }
        return urls;
    }

    void handle(const std::optional<std::string>& body, const Completion& completion) {
        const bool last = activeRequests_ == 1;
        // Falls below 0 where a fetch that overlapped another counted fewer requests than were still on their way.
        --activeRequests_;
        if (!body || body->empty()) {
            context_.printLine("No data for Array<" + typeName_ + ">");
        } else if (const std::string error = append(*body); !error.empty()) {
            context_.printLine("Error filling Array<" + typeName_ + ">: " + error);
            publish();
            return;
        }
        if (last && completion) array_ = std::make_shared<const Array>(completion(*array_));
        // Once, at the end: no reader sees records that the completion has not gone over.
        publish();
    }

    // The decoder's error, empty when all went well.
    [[nodiscard]] std::string append(const std::string& body) {
        Array grown = *array_;
        if (arrayEndpoint_) {
            auto decoded = decodeJson<Array>(body);
            if (!decoded.value) return decoded.error;
            grown.insert(grown.end(), std::make_move_iterator(decoded.value->begin()),
                         std::make_move_iterator(decoded.value->end()));
        } else {
            auto decoded = decodeJson<T>(body);
            if (!decoded.value) return decoded.error;
            grown.push_back(std::move(*decoded.value));
        }
        array_ = std::make_shared<const Array>(std::move(grown));
        return {};
    }

    void publish() {
        {
            const std::lock_guard lock(mutex_);
            published_ = {array_, activeRequests_};
        }
        for (const auto& handler : changed_) handler();
    }

    LoaderContext context_;
    std::string typeName_;
    std::string fromUrl_;
    bool authenticated_;
    bool arrayEndpoint_;
    std::vector<std::function<void()>> changed_;

    std::shared_ptr<const Array> array_ = std::make_shared<const Array>();
    std::int64_t activeRequests_ = 0;

    mutable std::mutex mutex_;
    Snapshot published_{array_, 0};
};

}  // namespace vantor
