// Signed updates: what is believed, what is kept on disk, and when the host is asked.
#include <gmock/gmock.h>

#include <QtCore/QTemporaryDir>
#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>

#include "app/cli/CatalogueCommand.h"
#include "catalogue/LayerCheck.h"
#include "catalogue/LayeredCatalogue.h"
#include "catalogue/Layers.h"
#include "catalogue/UpdateKeys.h"
#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/SignedCatalogue.h"

namespace vantor {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const CatalogueSigner maker(1);
const CatalogueSigner nextKey(2);
const CatalogueSigner stranger(3);
const std::vector<PublicKey> keys{maker.key(), nextKey.key()};

std::string contents(const std::string& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}
const std::string builtIn = contents(VANTOR_SOURCE_DIR "/resources/catalogue/events.json");

std::string comment(std::int64_t version, const std::string& schema = "1") {
    return "catalogue=" + std::to_string(version) + " schema=" + schema + " valid-until=2026-12-01 date=2026-09-03";
}

const auto builtInSections = *decodeJson<std::vector<EventsSection>>(builtIn).value;

// As good as all of them where they are only kept, and much faster.
const std::vector fewSections(builtInSections.begin(), builtInSections.begin() + 5);

// Another catalogue for each version.
std::string bodyOf(std::int64_t version, std::vector<EventsSection> sections = fewSections) {
    sections.front().note = std::to_string(version);
    return encodeJson(sections);
}

std::int64_t versionOf(const CatalogueUpdates& updates) {
    return updates.inForce() ? updates.inForce()->facts.version : 0;
}

// Dies at its n-th replacement, before it is made or with only the half of a new file written beside.
struct DyingFiles final : FolderUpdateFiles {
    DyingFiles(const std::string& folder, int n, bool halfway)
        : FolderUpdateFiles(folder), path(folder), left(n), torn(halfway) {}
    bool replace(const std::string& name, const std::string& text) override {
        if (left-- > 0) return FolderUpdateFiles::replace(name, text);
        if (torn && left == -1) std::ofstream(path + "/" + name + ".XQdKzT") << text.substr(0, text.size() / 2);
        return false;
    }
    std::string path;
    int left;
    bool torn;
};

struct Updates : testing::Test {
    QTemporaryDir folder;
    [[nodiscard]] std::string path() const { return folder.path().toStdString(); }
    [[nodiscard]] CatalogueUpdates open(std::int64_t builtInVersion = 1) const {
        return open(std::make_unique<FolderUpdateFiles>(path()), builtInVersion);
    }
    [[nodiscard]] static CatalogueUpdates open(std::unique_ptr<UpdateFiles> files, std::int64_t builtInVersion = 1) {
        CatalogueUpdates updates({std::move(files), keys, builtInVersion});
        (void)updates.read();
        return updates;
    }
    static bool give(CatalogueUpdates& updates, std::int64_t version, const CatalogueSigner& signer = maker,
                     const std::vector<EventsSection>& sections = fewSections) {
        const std::string body = bodyOf(version, sections);
        return updates.offer(signer.sign(body, comment(version)), body, "tag", sections.size()).value.value_or(false);
    }
};

class Corruption {
public:
    explicit Corruption(unsigned seed) : random_(seed) {}

    // One update that must not be accepted over version 5 with all sections.
    std::pair<std::string, std::string> operator()() {
        std::string body = six;
        std::string signature = good;
        // Nobody signs what the first line says.
        const std::size_t first = good.find('\n') + 1;
        switch (below(18)) {
            case 0:
                flip(body, 0);
                break;
            case 1:
                flip(signature, first);
                break;
            case 2:
                body.resize(below(body.size()));
                break;
            case 3:
                signature.resize(below(signature.size() - 1));
                break;
            case 4:
                signature = maker.sign(body, comment(static_cast<std::int64_t>(below(5))));
                break;
            case 5:
                signature = stranger.sign(body, comment(6));
                break;
            case 6:
                signature = maker.sign(body, comment(6), "Ed");
                break;
            case 7:  // the comment of another document
                signature = swapComment(good, maker.sign(six + " ", comment(7)));
                break;
            case 8:
                signature = maker.sign(body, comment(6, std::to_string(2 + below(9))));
                break;
            case 9: {
                const std::string words[] = {"catalogue=6 schema=1",
                                             "schema=1 valid-until=2026-12-01",
                                             "catalogue=6",
                                             "catalogue=6x schema=1 valid-until=2026-12-01",
                                             "catalogue=6 catalogue=9 schema=1 valid-until=2026-12-01",
                                             "catalogue=6 schema=1 valid-until=2026-13-01"};
                signature = maker.sign(body, words[below(std::size(words))]);
                break;
            }
            default:
                body = wrong(body);
                signature = maker.sign(body, comment(6));
        }
        return {signature, body};
    }

private:
    const std::string six = bodyOf(6, builtInSections);
    const std::string good = maker.sign(six, comment(6));

    std::size_t below(std::size_t end) { return random_() % end; }
    void flip(std::string& text, std::size_t from) {
        text[from + below(text.size() - from)] ^= static_cast<char>(1U << below(8));
    }
    static std::string swapComment(const std::string& one, const std::string& other) {
        const std::size_t at = one.find("trusted comment: ", 20), there = other.find("trusted comment: ", 20);
        return one.substr(0, at) + other.substr(there);
    }
    // What is signed as it should be, and wrong in itself.
    std::string wrong(const std::string& body) {
        auto sections = builtInSections;
        EventsSection& any = sections[below(sections.size())];
        switch (below(10)) {
            case 0:
                return body.substr(0, below(body.size()));
            case 1: {  // two bytes a character
                std::string wide;
                for (const char each : body) (wide += each) += '\0';
                return wide;
            }
            case 2:
                return "\x1f\x8b" + body;
            case 3:
                return body + std::string(largestLayer + 1 - body.size() + below(5000), ' ');
            case 4:
                return "<html>" + body;
            case 5:
                sections.resize(below(38));
                break;
            case 6:
                any.id = sections[(&any == sections.data()) ? 1 : 0].id;
                break;
            case 7:
                any.id = 100 + static_cast<std::int64_t>(below(1000));
                break;
            case 8:
                any.sequences.pattern[below(any.sequences.pattern.size())].eventId = 98;
                break;
            default:
                for (EventTimelineData& step : any.sequences.pattern) step.durationMinutes = 0;
        }
        return encodeJson(sections);
    }

    std::mt19937 random_;
};

}  // namespace

TEST_F(Updates, AreAcceptedFromBothKeysAndOnlyGrow) {
    auto updates = open();
    EXPECT_EQ(updates.inForce(), nullptr);
    EXPECT_TRUE(give(updates, 5));
    EXPECT_EQ(updates.inForce()->facts, (CatalogueFacts{5, "2026-09-03", "2026-12-01"}));
    EXPECT_EQ(updates.etag(), "tag");
    EXPECT_TRUE(give(updates, 6, nextKey));
    EXPECT_FALSE(give(updates, 6)) << "the same again is nothing new";
    const std::string old = bodyOf(5);
    EXPECT_THAT(updates.offer(maker.sign(old, comment(5)), old, "", 5).error,
                HasSubstr("version 5 is older than version 6"));
    const std::string before = bodyOf(7);
    EXPECT_TRUE(updates.offer(maker.sign(before, comment(7, "0")), before, "", 5).value.value_or(false))
        << "the format before this one";
    EXPECT_EQ(versionOf(updates), 7);
    // What a newer program brings along counts more than an older update.
    EXPECT_EQ(versionOf(open(7)), 0);
}

TEST_F(Updates, RefuseAThousandDamagedOnes) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::printf("corruption seed %u\n", seed);
    auto updates = open();
    ASSERT_TRUE(give(updates, 5, maker, builtInSections));
    const std::string kept = contents(path() + "/current");
    Corruption corrupted(seed);
    for (int number = 0; number < 1000; ++number) {
        const auto [signature, body] = corrupted();
        const auto taken = updates.offer(signature, body, "", updates.inForce()->sections.size());
        ASSERT_FALSE(taken.value.value_or(false)) << number << "\n" << signature << body.substr(0, 400);
        ASSERT_FALSE(taken.error.empty());
        ASSERT_EQ(versionOf(updates), 5);
        ASSERT_THAT(updates.inForce()->sections, SizeIs(48));
    }
    EXPECT_EQ(contents(path() + "/current"), kept);
    EXPECT_TRUE(give(updates, 6, maker, builtInSections)) << "what is not damaged is still taken";
}

TEST_F(Updates, SurviveAnEndAtEveryStepOfTheReplacement) {
    for (const bool torn : {false, true})
        for (int step = 0; step < 4; ++step) {
            const QTemporaryDir each;
            const std::string where = each.path().toStdString();
            {
                auto updates = open(std::make_unique<FolderUpdateFiles>(where));
                ASSERT_TRUE(give(updates, 5));
                ASSERT_TRUE(give(updates, 6));
            }
            auto dying = open(std::make_unique<DyingFiles>(where, step, torn));
            EXPECT_EQ(give(dying, 7), step > 1) << step;
            // The next start finds the one before or the new one, whole, with one to go back to, and takes the next.
            auto after = open(std::make_unique<FolderUpdateFiles>(where));
            EXPECT_EQ(versionOf(after), step > 1 ? 7 : 6);
            EXPECT_EQ(versionOf(after), versionOf(dying)) << "what is shown is what is kept";
            EXPECT_THAT(after.inForce()->sections, SizeIs(5));
            EXPECT_FALSE(give(after, 5));
            EXPECT_TRUE(give(after, 8));
            EXPECT_TRUE(after.rollBack());
            EXPECT_EQ(versionOf(after), step > 1 ? 7 : 6);
        }
}

TEST_F(Updates, AreCheckedAgainAtEachStart) {
    {
        auto updates = open();
        ASSERT_TRUE(give(updates, 5));
        ASSERT_TRUE(give(updates, 6));
    }
    const auto damage = [&](const char* name) {
        std::fstream file(path() + "/" + name, std::ios::in | std::ios::out);
        file.seekp(2000);
        file << "!";
    };
    damage("current");
    CatalogueUpdates updates({std::make_unique<FolderUpdateFiles>(path()), keys, 1});
    EXPECT_THAT(updates.read(), ElementsAre(HasSubstr("\"current\" is not used: signature")));
    EXPECT_EQ(versionOf(updates), 5);
    EXPECT_EQ(updates.etag(), "") << "the newest is wanted again";
    EXPECT_FALSE(give(updates, 5));
    EXPECT_TRUE(give(updates, 6));
    EXPECT_EQ(versionOf(updates), 6);
    damage("current");
    damage("previous");
    std::ofstream(path() + "/state.json") << "{";
    EXPECT_THAT(updates.read(), SizeIs(2));
    EXPECT_EQ(updates.inForce(), nullptr);
    EXPECT_TRUE(give(updates, 6));
}

TEST_F(Updates, GoBackUntilANewerOneComes) {
    auto updates = open();
    EXPECT_FALSE(updates.rollBack());
    for (const int version : {5, 6}) ASSERT_TRUE(give(updates, version));
    EXPECT_TRUE(updates.rollBack());
    EXPECT_EQ(versionOf(updates), 5);
    EXPECT_EQ(versionOf(open()), 5) << "kept";
    EXPECT_FALSE(give(updates, 6)) << "withdrawn";
    EXPECT_TRUE(give(updates, 7));
    EXPECT_EQ(versionOf(updates), 7);
    // Not to the withdrawn one, and then to the built-in one.
    EXPECT_TRUE(updates.rollBack());
    EXPECT_EQ(versionOf(updates), 5);
    EXPECT_TRUE(updates.rollBack());
    EXPECT_EQ(updates.inForce(), nullptr);
    EXPECT_TRUE(give(updates, 8));

    const LayeredCatalogue::Needs needs{.updateFolder = path(), .keys = keys, .builtIn = {1, "2026-10-01", ""}};
    std::ostringstream out, err;
    EXPECT_EQ(runCatalogueRollback(needs, out, err), 0);
    EXPECT_EQ(runCatalogueRollback(needs, out, err), 1);
    EXPECT_EQ(out.str(), "catalogue version 1 of 1 October 2026, built in\n");
    EXPECT_EQ(err.str(), "vantor: no update of the catalogue is in use\n");
}

TEST(UpdateKeys, LeaveTheTestKeyToBuildsForTests) {
    const std::string test(testKey);
    EXPECT_THAT(believedKeys({maker.keyText(), "", "no key", test}, false), ElementsAre(maker.key()));
    EXPECT_THAT(believedKeys({maker.keyText(), nextKey.keyText()}, true),
                ElementsAre(maker.key(), nextKey.key(), *parsePublicKey(test)));
    EXPECT_THAT(contents(VANTOR_SOURCE_DIR "/demo/catalogue/test.pub"), HasSubstr("\n" + test + "\n"));
}

}  // namespace vantor
