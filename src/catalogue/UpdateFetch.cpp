#include "catalogue/UpdateFetch.h"

#include <QtCore/QDateTime>
#include <algorithm>
#include <charconv>
#include <utility>

#include "catalogue/CatalogueUpdate.h"
#include "data/SettingKeys.h"

namespace vantor {

namespace {

constexpr Clock::Seconds sixHours = 6 * 60 * 60;
// So that not all players ask in the same minute after a patch.
constexpr double jitter = 60 * 60;
constexpr Clock::Seconds firstPause = 10 * 60;
constexpr Clock::Seconds longestPause = 24 * 60 * 60;

}  // namespace

std::int64_t retryAfterSeconds(const std::string& header, Clock::Seconds now) {
    std::int64_t seconds = 0;
    const auto [end, error] = std::from_chars(header.data(), header.data() + header.size(), seconds);
    if (error != std::errc() || end != header.data() + header.size()) {
        // The only form of a moment that is still sent: Sun, 06 Nov 1994 08:49:37 GMT. The toolkit wants the zone as a
        // number.
        const QString text = QString::fromStdString(header).replace(QLatin1String("GMT"), QLatin1String("+0000"));
        const auto moment = QDateTime::fromString(text, Qt::RFC2822Date);
        seconds = moment.isValid() ? moment.toSecsSinceEpoch() - now : 0;
    }
    return std::clamp<std::int64_t>(seconds, 0, longestPause);
}

UpdateFetch::UpdateFetch(Needs needs) : needs_(std::move(needs)) {}

void UpdateFetch::askIfDue() {
    if (needs_.host.empty() || !needs_.download || asking_) return;
    if (!needs_.defaults.get<bool>(settings::fetchCatalogue).value_or(true)) return;
    const Clock::Seconds now = needs_.clock.now();
    // A clock that was set back must not keep it from asking for years.
    if (now >= last_ && now < last_ + pause_) return;
    asking_ = true;
    DownloadRequest signature = request("catalogue.json.minisig");
    signature.etag = needs_.etag();
    signature.atMost = largestSignature;
    needs_.download->get(std::move(signature), [this](const auto& answer) { handleSignature(answer); });
}

DownloadRequest UpdateFetch::request(const std::string& file) const {
    return {.url = needs_.host + "/catalogue/" + std::to_string(catalogueSchema) + "/" + file};
}

void UpdateFetch::handleSignature(const std::optional<DownloadAnswer>& answer) {
    if (!answer || (answer->status != 200 && answer->status != 304)) return failed(answer);
    if (answer->status == 304 || !needs_.wants(answer->body)) return answered();
    needs_.download->get(request("catalogue.json"), [this, signature = answer->body, etag = answer->etag](
                                                        const auto& body) { handleBody(signature, etag, body); });
}

void UpdateFetch::handleBody(const std::string& signature, const std::string& etag,
                             const std::optional<DownloadAnswer>& answer) {
    if (!answer || answer->status != 200) return failed(answer);
    needs_.offer(signature, answer->body, etag);
    answered();
}

void UpdateFetch::answered() {
    asking_ = false;
    failures_ = 0;
    last_ = needs_.clock.now();
    pause_ = sixHours + static_cast<Clock::Seconds>(needs_.random() * jitter);
}

void UpdateFetch::failed(const std::optional<DownloadAnswer>& answer) {
    asking_ = false;
    last_ = needs_.clock.now();
    pause_ = std::min(firstPause << std::min(failures_++, 10), longestPause);
    if (answer) pause_ = std::max(pause_, retryAfterSeconds(answer->retryAfter, last_));
    needs_.printLine("No catalogue update: " + (answer
                                                    ? "the host answered with status " + std::to_string(answer->status)
                                                    : std::string("the host gave no whole answer")));
}

}  // namespace vantor
