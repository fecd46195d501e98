#pragma once
// What lies over the embedded catalogue, section by section: the player's files over the newest signed update. Read and
// changed on the session queue; its status may be asked for from any thread.

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/CatalogueUpdates.h"
#include "catalogue/PlayerFiles.h"
#include "catalogue/UpdateFetch.h"
#include "data/Catalogue.h"

namespace vantor {

struct CatalogueStatus {
    enum class Source { builtIn, update };

    Source source = Source::builtIn;  // of what lies below the player's files
    CatalogueFacts facts{};
    bool fetches = false;                     // there is a host to ask
    std::int64_t day = 0;                     // that was computed for
    bool dated = false;                       // another day may have other sections
    std::optional<bool> festivals{};          // whether any is on or has dates ahead; nothing before it is loaded
    std::string updateFault{};                // the last one, one line
    std::vector<std::string> playerFiles{};   // those in force, by name
    std::vector<std::string> playerFaults{};  // one line each

    bool operator==(const CatalogueStatus&) const = default;
};

class LayeredCatalogue {
public:
    using PrintLine = std::function<void(const std::string& line)>;

    struct Needs {
        std::string playerFolder{};               // empty: there is none
        std::string updateFolder{};               // the same
        std::vector<PublicKey> keys{};            // whose updates are believed
        CatalogueFacts builtIn{};                 // of the embedded catalogue
        std::function<std::string()> embedded{};  // its text; asked for where it is not loaded yet
        std::string host{};                       // where updates lie; empty: nothing is fetched
        Download* download = nullptr;
        std::function<double()> random{};  // from 0 to below 1
    };

    LayeredCatalogue(Needs needs, const Defaults& defaults, const Clock& clock, PrintLine printLine,
                     std::function<void()> updated);

    // Queue: what is on disk, in place of what was read before; each fault is a printed line.
    void read();
    void readPlayerFiles();
    // Queue: asks for an update if it is time to; `updated` is called where one is in force after that.
    void askIfDue() { fetch_.askIfDue(); }
    // Queue: the update in force counts no longer. False: there is none, or the disk refuses.
    bool rollBack();
    // Queue: the catalogue to compute with.
    [[nodiscard]] std::vector<EventsSection> over(const std::vector<EventsSection>& embedded);

    // Any thread; never null.
    [[nodiscard]] std::shared_ptr<const CatalogueStatus> status() const;

private:
    [[nodiscard]] bool wants(const std::string& signature);
    void offer(const std::string& signature, const std::string& body, const std::string& etag);
    void refuse(const std::string& error);
    [[nodiscard]] std::size_t sectionsNow() const;
    void publish();

    Needs needs_;
    PrintLine printLine_;
    std::function<void()> updated_;
    PlayerFiles player_;
    CatalogueUpdates updates_;
    std::string updateFault_;
    std::size_t embeddedSections_ = 0;  // 0: not loaded yet
    const Clock& clock_;
    std::int64_t day_ = 0;
    bool dated_ = false;
    std::optional<bool> festivals_;
    UpdateFetch fetch_;

    mutable std::mutex mutex_;
    std::shared_ptr<const CatalogueStatus> status_ = std::make_shared<const CatalogueStatus>();
};

}  // namespace vantor
