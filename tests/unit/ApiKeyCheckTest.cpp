// The key check and the field that uses it, against a web API that answers when told to.

#include <gmock/gmock.h>

#include <QtCore/QEventLoop>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTimer>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include "app/ApiKeyField.h"
#include "data/SessionQueue.h"
#include "data/SettingKeys.h"
#include "fake/FakeDefaults.h"
#include "fake/FakeMainThread.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"
#include "platform/qt/QtMainThread.h"
#include "platform/qt/QtUrlSession.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Trouble = ApiKeyField::Trouble;

const std::string account =
    R"({"id":"1","name":"n.1","age":1,"world":1,"created":"c","access":[],"guilds":[],"commander":false,
        "fractal_level":1,"daily_ap":1,"monthly_ap":1,"wvw_rank":1})";
const std::string refusal = R"({"text":"Invalid access token"})";

class ApiKeyCheckTest : public testing::Test {
protected:
    ApiKeyField& field() {
        if (!made)
            made.emplace(defaults,
                         ApiKeyCheck::Needs{session, mainThread, "https://api.example",
                                            [this](const std::string& line) { printed.push_back(line); }},
                         [this] { accepted.push_back(stored()); });
        return *made;
    }
    void confirm(const std::string& key) {
        field().edit();
        field().type(key);
        field().confirm();
    }
    void answer(std::optional<std::string> body, std::size_t place = 0) {
        ASSERT_TRUE(session.answer(std::move(body), place));
        queue.runAll();
        mainThread.runAll();
    }
    [[nodiscard]] std::string stored() const { return defaults.get<std::string>(settings::apiKey).value_or("unset"); }
    [[nodiscard]] std::vector<std::string> asked() const {
        std::vector<std::string> urls;
        for (const auto& request : session.requests()) urls.push_back(request.url);
        return urls;
    }

    FakeDefaults defaults;
    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeMainThread mainThread;
    std::vector<std::string> printed;
    std::vector<std::string> accepted;
    std::optional<ApiKeyField> made;
};

TEST_F(ApiKeyCheckTest, PutsTheKeyIntoTheAddressAsTypedOrAsksNothing) {
    const std::string front = "https://api.example/v2/account?access_token=";
    for (const char* key : {"", "ABC-123", "a%20b", "a&b=c", "a#b", "a/?b", "a+b", "a'(b)*!$,;:@~._"})
        EXPECT_EQ(ApiKeyCheck::address("https://api.example", key), front + key) << key;
    for (const char* key : {" ", "ABC ", "a\nb", "a\"b", "<a>", "a%2", "a%zz", "schlüssel", "a\\b", "{a}", "a|b", "a^b",
                            "a`b", "a[b]", "a#b#c", "\x7f", "\xff"})
        EXPECT_EQ(ApiKeyCheck::address("https://api.example", key), std::nullopt) << key;

    defaults.put(settings::apiKey, std::string("OLD"));
    confirm("with a blank");
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_TRUE(field().isEditing());
    EXPECT_FALSE(field().isChecking());
    EXPECT_EQ(field().modText(), "with a blank");
    field().cancel();
    confirm("NEW");
    ASSERT_EQ(session.requests().size(), 1U);
    EXPECT_EQ(session.requests().front().url, front + "NEW");
    EXPECT_THAT(session.requests().front().headers, IsEmpty());
}

TEST_F(ApiKeyCheckTest, OnlyAKeyThatTheWebApiTakesReplacesTheStoredOne) {
    defaults.put(settings::apiKey, std::string("OLD"));
    EXPECT_EQ(field().text(), "OLD");
    EXPECT_FALSE(field().isEditing());
    field().edit();
    EXPECT_EQ(field().modText(), "OLD");

    struct Case {
        std::optional<std::string> body;
        std::string content;
        Trouble trouble;
    };
    const std::vector<Case> refusals{
        {refusal, "Invalid API key", Trouble::none},
        {"<html>", "Invalid API key", Trouble::none},
        {"[" + account + "]", "Invalid API key", Trouble::none},
        {R"({"id":"1"})", "Invalid API key", Trouble::none},
        {std::nullopt, "NEW", Trouble::noAnswer},
    };
    for (const auto& [body, content, trouble] : refusals) {
        SCOPED_TRACE(body.value_or("no answer"));
        confirm("NEW");
        EXPECT_TRUE(field().isChecking());
        answer(body);
        EXPECT_FALSE(field().isChecking());
        EXPECT_TRUE(field().isEditing());
        EXPECT_EQ(field().modText(), content);
        EXPECT_EQ(field().trouble(), trouble);
        EXPECT_EQ(field().text(), "OLD");
        EXPECT_EQ(stored(), "OLD");
    }
    EXPECT_THAT(printed, ElementsAre("No account data"));
    EXPECT_THAT(accepted, IsEmpty());

    confirm("NEW");
    answer(account);
    EXPECT_FALSE(field().isEditing());
    EXPECT_EQ(field().text(), "NEW");
    EXPECT_THAT(accepted, ElementsAre("NEW"));  // it was stored by then
}

TEST_F(ApiKeyCheckTest, ALateAnswerToAnOlderCheckChangesNothing) {
    for (const bool olderFirst : {true, false}) {
        for (const auto& [older, newer] : {std::pair{account, refusal}, std::pair{refusal, account}}) {
            SCOPED_TRACE(std::to_string(olderFirst) + older);
            defaults.put(settings::apiKey, std::string("OLD"));
            accepted.clear();
            confirm("FIRST");
            confirm("SECOND");
            answer(olderFirst ? older : newer, olderFirst ? 0 : 1);
            EXPECT_EQ(stored(), olderFirst || newer == refusal ? "OLD" : "SECOND");
            answer(olderFirst ? newer : older);
            EXPECT_EQ(stored(), newer == account ? "SECOND" : "OLD");
            EXPECT_EQ(accepted.size(), newer == account ? 1U : 0U);
            EXPECT_EQ(field().isEditing(), newer == refusal);
            EXPECT_FALSE(field().isChecking());
        }
    }
    // Nor does one that comes after the player went back, or after the panel is gone.
    confirm("THIRD");
    field().cancel();
    answer(account);
    EXPECT_NE(stored(), "THIRD");
    confirm("FOURTH");
    ASSERT_TRUE(session.answer(account));
    queue.runAll();
    made.reset();
    mainThread.runAll();
    EXPECT_NE(stored(), "FOURTH");
    EXPECT_THAT(printed, IsEmpty());
}

TEST_F(ApiKeyCheckTest, AKeyThatCannotBeStoredIsNotTakenOver) {
    defaults.put(settings::apiKey, std::string("OLD"));
    defaults.failAtWrite(1);
    confirm("NEW");
    answer(account);
    EXPECT_EQ(field().trouble(), Trouble::notStored);
    EXPECT_TRUE(field().isEditing());
    EXPECT_EQ(field().text(), "OLD");
    EXPECT_THAT(accepted, IsEmpty());
    field().confirm();
    answer(account);
    EXPECT_THAT(accepted, ElementsAre("NEW"));
}

QStringList logged;

// Over a real connection, whatever comes back: with every category of the toolkit switched on.
TEST_F(ApiKeyCheckTest, TheKeyReachesNoLog) {
    const std::string canary = "CANARY-0123-KEY";
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const std::string host = "http://127.0.0.1:" + std::to_string(server.serverPort());
    QByteArray response;
    QByteArray asked;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        auto* const socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [&, socket] {
            asked += socket->readAll();
            socket->write(response);
            socket->disconnectFromHost();
        });
    });
    QtMainThread main;
    SessionQueue worker;
    QtUrlSession real(worker);
    ApiKeyCheck check({real, main, host, [this](const std::string& line) { printed.push_back(line); }});
    QLoggingCategory::setFilterRules(QStringLiteral("*=true"));
    const auto before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) { logged.append(text); });
    const auto ends = [&](const std::string& key) {
        std::optional<ApiKeyCheck::Verdict> verdict;
        QEventLoop loop;
        QTimer::singleShot(10000, &loop, &QEventLoop::quit);
        const bool begun = check.check(key, [&](ApiKeyCheck::Verdict told) {
            verdict = told;
            loop.quit();
        });
        if (begun) loop.exec();
        return verdict;
    };
    for (const QByteArray& each :
         {QByteArray("HTTP/1.1 401 Unauthorized\r\nContent-Length: 2\r\n\r\n{}"), QByteArray("no HTTP at all\r\n\r\n"),
          QByteArray("HTTP/1.1 302 Found\r\nLocation: ftp://elsewhere/\r\nContent-Length: 0\r\n\r\n"), QByteArray()}) {
        response = each;
        EXPECT_TRUE(ends(canary)) << each.toStdString();
    }
    EXPECT_TRUE(asked.contains(QByteArray::fromStdString("GET /v2/account?access_token=" + canary + " ")));
    server.close();
    EXPECT_EQ(ends(canary), ApiKeyCheck::Verdict::noData);
    EXPECT_FALSE(ends(canary + " \""));
    qInstallMessageHandler(before);
    QLoggingCategory::setFilterRules({});
    worker.finish();
    for (const auto& line : printed) EXPECT_EQ(line, "No account data");
    EXPECT_THAT(logged.join(QLatin1Char('\n')).toStdString(), testing::Not(testing::HasSubstr(canary)));
}

}  // namespace
}  // namespace vantor
