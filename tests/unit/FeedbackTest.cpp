// The feedback forms: what is refused, what is sent byte for byte, and how answers set the lines. Script translators.

#include <QtCore/QFile>
#include <QtCore/QStringList>

#include "data/Decoder.h"
#include "feedback/Appreciation.h"
#include "feedback/Message.h"
#include "translators/ScriptGrid.h"
#include "unit/Services.h"

namespace vantor {
namespace {

using Lines = std::pair<std::string, std::string>;  // error, success

class FeedbackTest : public testing::Test, protected Services {
protected:
    Lines sent(const QString& text) {
        message.setMessage(text);
        message.send();
        return lines();
    }
    [[nodiscard]] Lines lines() const { return {message.error(), message.success()}; }
    Lines answered(std::optional<int> status, std::size_t place = 0) {
        EXPECT_TRUE(session.answerStatus(status, place));
        settle();
        return lines();
    }

    Message::Needs needs{session, mainThread, "https://feedback.example/api/message"};
    Message message{suggestionForm(), needs};
};

const Lines sending{"", "Sending feedback..."};
const Lines received{"", "Feedback sent successfully!"};
const Lines failed{"Task failed...retry later...", ""};
const Lines tooShort{"Please describe thoroughly, the description is too short.", ""};
const QString enough(20, QLatin1Char('x'));

TEST_F(FeedbackTest, RefusesWhatHasFewerThanTwentyUserPerceivedCharacters) {
    for (const QString& one : {QStringLiteral("x"), QStringLiteral(" "), QStringLiteral("👨‍👩‍👧‍👦"),
                               QStringLiteral("🇮🇹"), QStringLiteral("é"), QStringLiteral("👍🏽")}) {
        EXPECT_EQ(sent(one.repeated(19)), tooShort) << one.toStdString();
        EXPECT_EQ(sent(one.repeated(20)), sending) << one.toStdString();
    }
}

TEST_F(FeedbackTest, PostsTheBodyByteForByte) {
    Message bug(bugReportForm(), needs);
    bug.setMessage(QStringLiteral("a+b & c=d; é 😀 100% \"#?\""));
    bug.send();
    EXPECT_EQ(bug.error(), "An option must be selected.");
    EXPECT_TRUE(session.requests().empty());
    bug.setSelected(1);
    bug.send();
    sent(QStringLiteral("line one of it\nline two"));

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
    int changes = 0;
    message.onChanged([&] { ++changes; });
    EXPECT_EQ(sent(enough), sending);
    ASSERT_TRUE(session.answerStatus(200));
    queue.runAll();
    EXPECT_EQ(lines(), sending) << "set off the main thread";
    settle();
    EXPECT_EQ(lines(), received);
    EXPECT_EQ(changes, 2);
    for (const std::optional<int> status : {std::optional(201), std::optional(500), std::optional<int>()}) {
        message.send();
        EXPECT_EQ(answered(status), failed);
    }
    // Two under way, answered in the other order.
    message.send();
    message.send();
    EXPECT_EQ(answered(500, 1), failed);
    EXPECT_EQ(answered(200), received);
    // An answer after the form is gone meets nobody.
    {
        Message gone(suggestionForm(), needs);
        gone.setMessage(enough);
        gone.send();
    }
    EXPECT_EQ(answered(500), received);
}

TEST(AppreciationTest, TheShippedTextsDecode) {
    QFile file(QStringLiteral(":/texts/support.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(decodeJson<SupportData>(file.readAll().toStdString()).error, "");
}

TEST(ScriptGridTest, CutsTheTypedTextIntoRowsOfNineCells) {
    const std::pair<QString, const char*> rows[] = {
        {{}, "A|B|C|D|E|F|G|H|I/J|K|L|M|N|O|P|Q|R/S|T|U|V|W|X|Y|Z|0/1|2|3|4|5|6|7|8|9"},
        {QStringLiteral("a b,Cdefgh"), "a| |b|,|C|d|e|f|g/h"},
        {QStringLiteral("123456789"), "1|2|3|4|5|6|7|8|9"},
        // Beside Thai or Indian script too.
        {QStringLiteral("ก👍🏽स"), "ก|👍🏽|स"},
        {QStringLiteral("ก👩\u200d🚀स👩\u200d🚀ก"), "ก|👩\u200d🚀|स|👩\u200d🚀|ก"},
        {QStringLiteral("x👨‍👩‍👧‍👦é"), "x|👨‍👩‍👧‍👦|é"},
    };
    for (const auto& [typed, expected] : rows) {
        QStringList drawn;
        for (const auto& row : scriptRows(typed)) drawn += QStringList(row.begin(), row.end()).join(QLatin1Char('|'));
        EXPECT_EQ(drawn.join(QLatin1Char('/')).toStdString(), expected);
    }
}

}  // namespace
}  // namespace vantor
