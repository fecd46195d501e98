// The key check and the field that uses it, against a web API that answers when told to.

#include <gmock/gmock.h>

#include <QtCore/QEventLoop>
#include <QtCore/QLoggingCategory>
#include <QtCore/QStringList>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include "app/ApiKeyField.h"
#include "data/SessionQueue.h"
#include "platform/qt/QtMainThread.h"
#include "platform/qt/QtUrlSession.h"
#include "unit/Services.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Trouble = ApiKeyField::Trouble;

const std::string account =
    R"({"id":"1","name":"n.1","age":1,"world":1,"created":"c","access":[],"guilds":[],"commander":false,
        "fractal_level":1,"daily_ap":1,"monthly_ap":1,"wvw_rank":1})";
const std::string refusal = R"({"text":"Invalid access token"})";

class ApiKeyCheckTest : public testing::Test, protected Services {
protected:
    ApiKeyCheckTest() {
        storeKey("OLD");
        field.emplace(defaults, ApiKeyCheck::Needs{session, mainThread, "https://api.example", print},
                      [this] { accepted.push_back(stored()); });
    }
    void confirm(const std::string& key) {
        field->edit();
        field->type(key);
        field->confirm();
    }
    [[nodiscard]] std::string stored() const { return defaults.get<std::string>(settings::apiKey).value_or("unset"); }

    std::vector<std::string> accepted;  // what was stored by then
    std::optional<ApiKeyField> field;
};

TEST_F(ApiKeyCheckTest, PutsTheKeyIntoTheAddressAsTypedOrAsksNothing) {
    const std::string front = "https://api.example/v2/account?access_token=";
    for (const char* key : {"", "ABC-123", "a%20b", "%41", "a&b=c", "a#b", "a/?b", "a+b", "a'(b)*!$,;:@~._"})
        EXPECT_EQ(ApiKeyCheck::address("https://api.example", key), front + key) << key;
    for (const char* key : {" ", "ABC ", "a\nb", "a\"b", "<a>", "a%", "a%2", "a%zz", "schlüssel", "a\\b", "{a}", "a|b",
                            "a^b", "a`b", "a[b]", "a#b#c", "\x7f", "\xff"})
        EXPECT_EQ(ApiKeyCheck::address("https://api.example", key), std::nullopt) << key;

    confirm("with a blank");
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_TRUE(field->isEditing());
    EXPECT_FALSE(field->isChecking());
    EXPECT_EQ(field->modText(), "with a blank");
    EXPECT_EQ(field->trouble(), Trouble::notAKey);
    field->cancel();
    confirm("NEW");
    EXPECT_THAT(asked(), ElementsAre(front + "NEW"));
    EXPECT_THAT(session.requests().front().headers, IsEmpty());
}

TEST_F(ApiKeyCheckTest, LeavesOutTheWhiteSpaceAroundWhatIsPasted) {
    const struct {
        const char *before, *after, *becomes;
    } edits[] = {{"", " \tKEY-1\r\n", "KEY-1"}, {"KEY", "KEY\n", "KEY"}, {"AZ", "A KEY\u00A0Z", "AKEYZ"},
                 {"KEY", "KEY ", "KEY "},       {"A B", "A BC", "A BC"}, {"AB", "A", "A"}};
    for (const auto& [before, after, becomes] : edits) {
        field->type("");
        for (const char letter : std::string(before)) field->type(field->modText() + letter);
        field->type(after);
        EXPECT_EQ(field->modText(), becomes) << after;
    }
}

TEST_F(ApiKeyCheckTest, SaysWhichPermissionsARealKeyLacks) {
    const std::string bare = R"({"id":"1","name":"n","access":[]})";
    const auto check = [&](const std::string& first, const std::optional<std::string>& tokenInfo) {
        confirm("KEY");
        answer(first);
        EXPECT_EQ(asked().back(), "https://api.example/v2/tokeninfo?access_token=KEY");
        answer(tokenInfo);
        EXPECT_FALSE(field->isChecking());
        return std::pair(field->trouble(), field->missingPermissions());
    };
    using Lacks = std::vector<std::string>;
    const auto lacking = [](const Lacks& missing) { return std::pair(Trouble::lacksPermission, missing); };
    EXPECT_EQ(check(bare, R"({"permissions":["account","guilds"]})"), lacking({"progression"}));
    EXPECT_EQ(check(R"({"text":"requires scope account"})", R"({"permissions":[]})"),
              lacking({"account", "progression"}));
    EXPECT_EQ(check(bare, std::nullopt), lacking({}));
    EXPECT_EQ(check(bare, R"({"permissions":["progression","account"]})"), std::pair(Trouble::noAnswer, Lacks()))
        << "a fault of theirs";
}

TEST_F(ApiKeyCheckTest, OnlyAKeyThatTheWebApiTakesReplacesTheStoredOne) {
    EXPECT_EQ(field->text(), "OLD");
    EXPECT_FALSE(field->isEditing());
    field->edit();
    EXPECT_EQ(field->modText(), "OLD");

    const struct {
        std::optional<std::string> body;
        bool failsToStore;
        std::string content;
        Trouble trouble;
    } refusals[] = {
        {refusal, false, "Invalid API key", Trouble::none},
        {"<html>", false, "Invalid API key", Trouble::none},
        {"[" + account + "]", false, "Invalid API key", Trouble::none},
        {R"({"id":"1"})", false, "Invalid API key", Trouble::none},
        {std::nullopt, false, "NEW", Trouble::noAnswer},
        {account, true, "NEW", Trouble::notStored},
    };
    for (const auto& row : refusals) {
        SCOPED_TRACE(row.body.value_or("no answer"));
        if (row.failsToStore) defaults.failAtWrite(defaults.writes() + 1);
        confirm("NEW");
        EXPECT_TRUE(field->isChecking());
        EXPECT_EQ(field->trouble(), Trouble::none);
        answer(row.body);
        EXPECT_FALSE(field->isChecking());
        EXPECT_TRUE(field->isEditing());
        EXPECT_EQ(field->modText(), row.content);
        EXPECT_EQ(field->trouble(), row.trouble);
        EXPECT_EQ(field->text(), "OLD");
        EXPECT_EQ(stored(), "OLD");
    }
    EXPECT_THAT(printed, ElementsAre("No account data"));
    EXPECT_THAT(accepted, IsEmpty());

    confirm("NEW");
    answer(account);
    EXPECT_FALSE(field->isEditing());
    EXPECT_EQ(field->text(), "NEW");
    EXPECT_THAT(accepted, ElementsAre("NEW"));
}

TEST_F(ApiKeyCheckTest, ALateAnswerToAnOlderCheckChangesNothing) {
    for (const bool olderFirst : {true, false}) {
        for (const auto& [older, newer] : {std::pair{account, refusal}, std::pair{refusal, account}}) {
            SCOPED_TRACE(std::to_string(olderFirst) + older);
            storeKey("OLD");
            accepted.clear();
            confirm("FIRST");
            confirm("SECOND");
            answer(olderFirst ? older : newer, olderFirst ? 0 : 1);
            EXPECT_EQ(stored(), olderFirst || newer == refusal ? "OLD" : "SECOND");
            answer(olderFirst ? newer : older);
            EXPECT_EQ(stored(), newer == account ? "SECOND" : "OLD");
            EXPECT_EQ(accepted.size(), newer == account ? 1U : 0U);
            EXPECT_EQ(field->isEditing(), newer == refusal);
            EXPECT_FALSE(field->isChecking());
        }
    }
    // Nor does one that comes after the player went back, or after the panel is gone.
    confirm("THIRD");
    field->cancel();
    answer(account);
    confirm("FOURTH");
    field.reset();
    answer(account);
    EXPECT_EQ(stored(), "SECOND");
    EXPECT_THAT(printed, IsEmpty());
}

QStringList logged;

// Over a real connection, whatever comes back: with every category of the toolkit switched on.
TEST_F(ApiKeyCheckTest, TheKeyReachesNoLog) {
    const std::string canary = "CANARY-0123-KEY";
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    QByteArray response;
    QByteArray heard;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        auto* const socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [&, socket] {
            heard += socket->readAll();
            socket->write(response);
            socket->disconnectFromHost();
        });
    });
    QtMainThread main;
    SessionQueue worker;
    QtUrlSession real(worker);
    ApiKeyCheck check({real, main, "http://127.0.0.1:" + std::to_string(server.serverPort()), print});
    QLoggingCategory::setFilterRules(QStringLiteral("*=true"));
    const auto before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) { logged.append(text); });
    const auto verdictOn = [&](const std::string& key) {
        std::optional<ApiKeyCheck::Verdict> verdict;
        QEventLoop loop;
        const bool begun = check.check(key, [&](ApiKeyCheck::Verdict told) {
            verdict = told;
            loop.quit();
        });
        if (begun) loop.exec();
        return verdict;
    };
    using Verdict = ApiKeyCheck::Verdict;
    const std::pair<QByteArray, Verdict> answers[] = {
        {"HTTP/1.1 401 Unauthorized\r\nContent-Length: 2\r\n\r\n{}", Verdict::invalid},
        {"no HTTP at all\r\n\r\n", Verdict::noData},
        {"HTTP/1.1 302 Found\r\nLocation: ftp://elsewhere/\r\nContent-Length: 0\r\n\r\n", Verdict::noData}};
    for (const auto& [bytes, verdict] : answers) {
        response = bytes;
        EXPECT_EQ(verdictOn(canary), verdict) << bytes.toStdString();
    }
    EXPECT_TRUE(heard.contains(QByteArray::fromStdString("GET /v2/account?access_token=" + canary + " ")));
    server.close();
    EXPECT_EQ(verdictOn(canary), Verdict::noData);
    EXPECT_FALSE(verdictOn(canary + " \""));
    qInstallMessageHandler(before);
    QLoggingCategory::setFilterRules({});
    worker.finish();
    for (const auto& line : printed) EXPECT_EQ(line, "No account data");
    EXPECT_THAT(logged.join(QLatin1Char('\n')).toStdString(), testing::Not(testing::HasSubstr(canary)));
}

}  // namespace
}  // namespace vantor
