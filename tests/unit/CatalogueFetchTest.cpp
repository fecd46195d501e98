// When the catalogue's host is asked, over a stand-in for the network, and how, over a real server on this machine.
#include <gmock/gmock.h>

#include <QtCore/QEventLoop>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <map>

#include "catalogue/LayerCheck.h"
#include "catalogue/LayeredCatalogue.h"
#include "catalogue/UpdateHost.h"
#include "data/SettingKeys.h"
#include "fake/FakeClock.h"
#include "fake/FakeDefaults.h"
#include "fake/SignedCatalogue.h"
#include "platform/qt/QtDownload.h"

namespace vantor {

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const CatalogueSigner maker(1);
const std::string body =
    R"([{"id": 1, "category": "", "name": "A", "active": true, "segments": [{"id": 1, "name": "New", "chatlink": "x"}],)"
    R"( "sequences": {"partial": [], "pattern": [{"r": 1, "d": 60}]}}])";

std::string signatureOf(int version) {
    return maker.sign(body, "catalogue=" + std::to_string(version) + " schema=1 valid-until=2026-12-01");
}

struct FakeDownload final : Download {
    void get(DownloadRequest request, Completion completion) override {
        asked.push_back(std::move(request));
        waiting.push_back(std::move(completion));
    }
    std::vector<DownloadRequest> asked;
    std::vector<Completion> waiting;
};

struct Fetch : testing::Test {
    static constexpr Clock::Seconds hour = 3600;

    QTemporaryDir folder;
    FakeDownload network;
    FakeDefaults defaults;
    FakeClock clock{1'790'000'000};
    std::vector<std::string> lines;
    int updated = 0;
    LayeredCatalogue catalogue{needs("https://files.example"), defaults, clock,
                               [this](const std::string& line) { lines.push_back(line); }, [this] { ++updated; }};

    LayeredCatalogue::Needs needs(const std::string& host) {
        return {.updateFolder = folder.path().toStdString(),
                .keys = {maker.key()},
                .builtIn = {1, "2026-10-01", ""},
                .host = host,
                .download = &network,
                .random = [] { return 0.5; }};
    }
    // Whether it asks after so long.
    bool asksAfter(Clock::Seconds seconds) {
        clock.advance(seconds);
        const auto before = network.asked.size();
        catalogue.askIfDue();
        return network.asked.size() > before;
    }
    void answer(std::optional<DownloadAnswer> answer) {
        ASSERT_THAT(network.waiting, SizeIs(1));
        const auto completion = std::exchange(network.waiting, {}).front();
        completion(answer);
    }
};

}  // namespace

TEST_F(Fetch, AsksForTheSignatureFirstAndOnANormalDayForNoMore) {
    EXPECT_TRUE(asksAfter(0));
    EXPECT_FALSE(asksAfter(0)) << "while it waits";
    answer(DownloadAnswer{200, "\"7\"", "", signatureOf(7)});
    answer(DownloadAnswer{200, "\"body\"", "", body});
    const DownloadRequest signature{"https://files.example/catalogue/1/catalogue.json.minisig", "", largestSignature};
    EXPECT_THAT(network.asked,
                ElementsAre(signature, DownloadRequest{"https://files.example/catalogue/1/catalogue.json"}));
    EXPECT_EQ(updated, 1);
    EXPECT_EQ(catalogue.status()->facts.version, 7);
    EXPECT_THAT(catalogue.over(*readLayer(body).value), SizeIs(1));

    // Six hours and the half of the hour by which players differ.
    EXPECT_FALSE(asksAfter(6 * hour + hour / 2 - 1));
    EXPECT_TRUE(asksAfter(1));
    EXPECT_EQ(network.asked.back().etag, "\"7\"");
    answer(DownloadAnswer{304});
    EXPECT_TRUE(asksAfter(7 * hour));
    answer(DownloadAnswer{200, "\"8\"", "", signatureOf(7)});
    EXPECT_THAT(network.waiting, IsEmpty()) << "the same version is not fetched again";
    EXPECT_THAT(lines, IsEmpty());
    EXPECT_EQ(updated, 1);
}

TEST_F(Fetch, WaitsAfterAFailureAndSaysSo) {
    const struct {
        std::optional<DownloadAnswer> answer;
        Clock::Seconds pause;
    } rows[] = {
        {std::nullopt, 600},
        {DownloadAnswer{500}, 1200},
        {DownloadAnswer{503, "", "7200"}, 7200},
        {DownloadAnswer{429, "", "a while"}, 4800},
        {DownloadAnswer{302}, 9600},
    };
    EXPECT_TRUE(asksAfter(0));
    for (const auto& row : rows) {
        answer(row.answer);
        EXPECT_FALSE(asksAfter(row.pause - 1)) << row.pause;
        EXPECT_TRUE(asksAfter(1)) << row.pause;
    }
    EXPECT_THAT(lines, SizeIs(5));
    EXPECT_THAT(lines[1], HasSubstr("No catalogue update: the host answered with status 500"));
    // An answer ends it; one that is refused changes nothing.
    answer(DownloadAnswer{200, "", "", "<html>Hello</html>"});
    EXPECT_THAT(catalogue.status()->updateFault, HasSubstr("refused: signature: not of the known form"));
    EXPECT_TRUE(asksAfter(7 * hour));
    answer(DownloadAnswer{200, "", "", signatureOf(7)});
    answer(DownloadAnswer{200, "", "", "<html>Hello</html>"});
    EXPECT_THAT(lines.back(), HasSubstr("refused: signature: is not this document's"));
    EXPECT_EQ(catalogue.status()->source, CatalogueStatus::Source::builtIn);
    EXPECT_EQ(updated, 0);
    for (int failure = 0; failure < 70; ++failure) {
        EXPECT_TRUE(asksAfter(24 * hour));
        answer(std::nullopt);
    }

    EXPECT_EQ(retryAfterSeconds("Sun, 06 Nov 1994 08:49:37 GMT", 784111777 - 60), 60);
    EXPECT_EQ(retryAfterSeconds("99999999999", 0), 24 * hour);
    EXPECT_EQ(retryAfterSeconds("-5", 0), 0);
}

TEST_F(Fetch, AsksNobodyWithoutAHostOrWhenSwitchedOffAndIsNotFooledByTheClock) {
    LayeredCatalogue without(needs(""), defaults, clock, [](const std::string&) {}, [] {});
    without.askIfDue();
    EXPECT_FALSE(without.status()->fetches);
    defaults.put(settings::fetchCatalogue, false);
    EXPECT_FALSE(asksAfter(0));
    defaults.put(settings::fetchCatalogue, true);
    EXPECT_TRUE(asksAfter(0));
    answer(DownloadAnswer{304});
    clock.set(0);  // 1970, as after an empty battery
    EXPECT_TRUE(asksAfter(0));
    answer(DownloadAnswer{200, "", "", signatureOf(7)});
    answer(DownloadAnswer{200, "", "", body});
    EXPECT_EQ(catalogue.status()->facts.version, 7);
    EXPECT_FALSE(asksAfter(hour));
    clock.set(1'790'000'000);
    EXPECT_TRUE(asksAfter(0));

    for (const char* host : {"https://files.example", "http://127.0.0.1:8000", "http://localhost:1"})
        EXPECT_TRUE(isUpdateHost(host)) << host;
    for (const char* host :
         {"", "https://", "https:///", "https://a b", "https://files.example/", "http://files.example",
          "http://127.0.0.1.example", "http://127.0.0.1:80@files.example", "file:///tmp"})
        EXPECT_FALSE(isUpdateHost(host)) << host;
}

namespace {

// Answers each path with the bytes set for it; of a path that drips, one byte every few milliseconds.
struct Server {
    Server() {
        EXPECT_TRUE(listener.listen(QHostAddress::LocalHost));
        QObject::connect(&listener, &QTcpServer::newConnection, &listener, [this] {
            QTcpSocket* const socket = listener.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                std::string& request = pending[socket];
                request += socket->readAll().toLower().toStdString();
                if (!request.ends_with("\r\n\r\n")) return;
                requests.push_back(std::exchange(request, {}));
                const std::string& head = requests.back();
                const std::string path = head.substr(4, head.find(' ', 4) - 4);
                socket->write(QByteArray::fromStdString(answers[path]));
                if (path != "/drip") return socket->disconnectFromHost();
                auto* const drop = new QTimer(socket);
                QObject::connect(drop, &QTimer::timeout, socket, [socket] { socket->write("x"); });
                drop->start(5);
            });
        });
    }
    [[nodiscard]] std::string address(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(listener.serverPort()) + path;
    }
    QTcpServer listener;
    std::map<std::string, std::string> answers;
    std::vector<std::string> requests;

private:
    std::map<QTcpSocket*, std::string> pending;
};

struct DirectQueue final : TaskQueue {
    void post(std::function<void()> task) override { task(); }
};

std::string answerOf(const std::string& status, const std::string& headers, const std::string& text) {
    return "HTTP/1.1 " + status + "\r\nConnection: close\r\nSet-Cookie: id=player\r\n" + headers +
           "Content-Length: " + std::to_string(text.size()) + "\r\n\r\n" + text;
}

}  // namespace

TEST(QtDownload, TakesWholeAnswersOfTheHostAndNothingElse) {
    Server server, other;
    const std::string location = "Location: ";
    server.answers = {
        {"/200", answerOf("200 OK", "ETag: \"7\"\r\n", "text")},
        {"/304", "HTTP/1.1 304 Not Modified\r\nConnection: close\r\n\r\n"},
        {"/503", answerOf("503 Busy", "Retry-After: 120\r\n", "<html>")},
        // A hundred bytes that unpack to a megabyte would come as they are.
        {"/packed", answerOf("200 OK", "Content-Encoding: gzip\r\n", "\x1f\x8b packed")},
        {"/large", answerOf("200 OK", "", std::string(5000, 'x'))},
        {"/short", "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: 9\r\n\r\nhalf"},
        {"/drip", "HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n"},
        {"/moved", answerOf("302 Found", location + "/200\r\n", "")},
        {"/away", answerOf("302 Found", location + other.address("/200") + "\r\n", "")},
    };
    DirectQueue queue;
    QtDownload download(queue);
    const struct {
        std::string path;
        int status;  // 0: no answer
        std::string body, etag, retryAfter;
    } rows[] = {
        {"/200", 200, "text", "\"7\"", ""}, {"/304", 304, "", "", ""},
        {"/503", 503, "<html>", "", "120"}, {"/packed", 200, "\x1f\x8b packed", "", ""},
        {"/large", 0, "", "", ""},          {"/short", 0, "", "", ""},
        {"/drip", 0, "", "", ""},           {"/moved", 200, "text", "\"7\"", ""},
        {"/away", 0, "", "", ""},           {"/200", 200, "text", "\"7\"", ""},
    };
    for (const auto& row : rows) {
        std::optional<std::optional<DownloadAnswer>> result;
        QEventLoop loop;
        QTimer::singleShot(20'000, &loop, [&] { loop.exit(1); });
        // Only what drips is ended by its deadline, which is far beyond what the others take.
        const std::chrono::seconds deadline(row.path == "/drip" ? 1 : 15);
        download.get({server.address(row.path), "\"6\"", 4096, deadline}, [&](const auto& answer) {
            result = answer;
            loop.quit();
        });
        ASSERT_EQ(loop.exec(), 0) << row.path;
        ASSERT_EQ(result->has_value(), row.status != 0) << row.path;
        if (!*result) continue;
        EXPECT_EQ((*result)->status, row.status) << row.path;
        EXPECT_EQ((*result)->body, row.body) << row.path;
        EXPECT_EQ((*result)->etag, row.etag) << row.path;
        EXPECT_EQ((*result)->retryAfter, row.retryAfter) << row.path;
    }
    EXPECT_THAT(other.requests, IsEmpty());
    EXPECT_THAT(server.requests.back(), AllOf(HasSubstr("if-none-match: \"6\""), HasSubstr("accept-encoding: identity"),
                                              Not(HasSubstr("cookie")), Not(HasSubstr("mozilla"))));
}

}  // namespace vantor
