// The feedback forms: what is refused, what is sent byte for byte, and how answers set the lines.

#include <gtest/gtest.h>

#include <QtCore/QFile>

#include "data/Decoder.h"
#include "fake/FakeMainThread.h"
#include "fake/FakeTaskQueue.h"
#include "fake/FakeUrlSession.h"
#include "feedback/Appreciation.h"
#include "feedback/FormEncoding.h"
#include "feedback/Message.h"

namespace vantor {
namespace {

using Lines = std::pair<std::string, std::string>;  // error, success

class FeedbackTest : public testing::Test {
protected:
    Message::Needs needs() { return {session, mainThread, "https://feedback.example/api/message"}; }
    static Lines lines(const Message& message) { return {message.error(), message.success()}; }
    void answer(std::optional<int> status, std::size_t place = 0) {
        ASSERT_TRUE(session.answerStatus(status, place));
        queue.runAll();
        mainThread.runAll();
    }

    FakeTaskQueue queue;
    FakeUrlSession session{queue};
    FakeMainThread mainThread;
};

constexpr auto enough = u"12345678901234567890";

TEST_F(FeedbackTest, RefusesAFormWithoutOptionFirstAndThenAShortText) {
    Message bug(bugReportForm(), needs());
    bug.send();
    EXPECT_EQ(lines(bug), Lines("An option must be selected.", ""));
    bug.setMessage(QString::fromUtf16(enough));
    bug.send();
    EXPECT_EQ(lines(bug), Lines("An option must be selected.", ""));
    bug.setSelected(1);
    bug.setMessage(QStringLiteral("short"));
    bug.send();
    EXPECT_EQ(lines(bug), Lines("Please describe thoroughly, the description is too short.", ""));
    EXPECT_TRUE(session.requests().empty());
}

TEST_F(FeedbackTest, CountsUserPerceivedCharacters) {
    const QString family = QStringLiteral("👨‍👩‍👧‍👦");
    const QString flag = QStringLiteral("🇮🇹");
    const std::pair<QString, bool> rows[] = {
        {QString(19, QLatin1Char('x')), false},
        {QString(20, QLatin1Char('x')), true},
        {QString(20, QLatin1Char(' ')), true},
        {family.repeated(19), false},
        {family.repeated(20), true},
        {flag.repeated(19), false},
        {QStringLiteral("é").repeated(19), false},
    };
    for (const auto& [text, sent] : rows) {
        Message message(suggestionForm(), needs());
        const auto before = session.requests().size();
        message.setMessage(text);
        message.send();
        EXPECT_EQ(session.requests().size(), before + (sent ? 1 : 0)) << text.toStdString();
    }
}

TEST_F(FeedbackTest, PostsTheBodyByteForByte) {
    Message bug(bugReportForm(), needs());
    bug.setSelected(1);
    bug.setMessage(QStringLiteral("a+b & c=d; é 😀 100% \"#?\""));
    bug.send();
    Message suggestion(suggestionForm(), needs());
    suggestion.setMessage(QStringLiteral("line one of it\nline two"));
    suggestion.send();

    UrlRequest expected;
    expected.method = "POST";
    expected.url = "https://feedback.example/api/message";
    expected.timeout = std::chrono::seconds(60);
    expected.body =
        "id=q4m7c2x9v5k8r3tz&subject=BUG%20REPORT&message=MAJOR:%20can%20be%20used,%20but%20there's%20errors%0A%0A"
        "a+b%20%26%20c%3Dd%3B%20%C3%A9%20%F0%9F%98%80%20100%25%20%22%23?%22";
    ASSERT_EQ(session.requests().size(), 2U);
    EXPECT_EQ(session.requests()[0], expected);
    expected.body = "id=q4m7c2x9v5k8r3tz&subject=SUGGESTION&message=line%20one%20of%20it%0Aline%20two";
    EXPECT_EQ(session.requests()[1], expected);
}

TEST_F(FeedbackTest, SetsTheLinesOnTheMainThreadByTheLastAnswer) {
    Message message(suggestionForm(), needs());
    int changes = 0;
    message.onChanged([&] { ++changes; });
    message.setMessage(QString::fromUtf16(enough));
    message.send();
    EXPECT_EQ(lines(message), Lines("", "Sending feedback..."));
    ASSERT_TRUE(session.answerStatus(200));
    queue.runAll();
    EXPECT_EQ(lines(message), Lines("", "Sending feedback...")) << "set off the main thread";
    mainThread.runAll();
    EXPECT_EQ(lines(message), Lines("", "Feedback sent successfully!"));
    EXPECT_EQ(changes, 2);

    const Lines failed("Task failed...retry later...", "");
    for (const std::optional<int> status : {std::optional(201), std::optional(500), std::optional<int>()}) {
        message.send();
        answer(status);
        EXPECT_EQ(lines(message), failed);
    }
    // Two under way, answered in the other order.
    message.send();
    message.send();
    answer(500, 1);
    EXPECT_EQ(lines(message), failed);
    answer(200);
    EXPECT_EQ(lines(message), Lines("", "Feedback sent successfully!"));
}

TEST_F(FeedbackTest, AnAnswerAfterTheFormIsGoneMeetsNobody) {
    {
        Message message(suggestionForm(), needs());
        message.onChanged([] { FAIL(); });
        message.onChanged({});
        message.setMessage(QString::fromUtf16(enough));
        message.send();
    }
    answer(200);
}

TEST(AppreciationTest, TheShippedFileNamesNoAddressAndASampleDecodes) {
    QFile file(QStringLiteral(VANTOR_SOURCE_DIR "/resources/texts/support.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto shipped = decodeJson<SupportData>(file.readAll().toStdString());
    ASSERT_TRUE(shipped.value) << shipped.error;
    EXPECT_FALSE(shipped.value->accountName);
    EXPECT_TRUE(shipped.value->cryptos.empty());

    const auto sample = decodeJson<SupportData>(
        R"({"accountName": "Maker.1234", "licence": "https://licence.example",
            "cryptos": [{"id": "AAA", "name": "First", "wallet": "w1"},
                        {"id": "BBB", "name": "Second", "wallet": "w2", "memo": "7"}]})");
    const SupportData expected{
        "Maker.1234", {{"AAA", "First", "w1", std::nullopt}, {"BBB", "Second", "w2", "7"}}, "https://licence.example"};
    EXPECT_EQ(sample.value, expected) << sample.error;
}

}  // namespace
}  // namespace vantor
