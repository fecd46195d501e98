// Data tasks against a real server on this machine.
#include <gmock/gmock.h>

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <cctype>
#include <map>
#include <thread>

#include "platform/qt/QtUrlSession.h"

namespace vantor {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

// Answers each path with the bytes set for it, and keeps what it was asked.
class Server {
public:
    Server() {
        EXPECT_TRUE(server_.listen(QHostAddress::LocalHost));
        QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
            QTcpSocket* socket = server_.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { read(*socket); });
        });
    }
    [[nodiscard]] std::string address(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(server_.serverPort()) + path;
    }

    std::map<std::string, std::string> answers;  // raw; none keeps the connection open without a word
    std::vector<std::string> requests;

private:
    // Headers have the same name in any case, and newer toolkits write all of them small.
    static void lowerNames(std::string& request, std::size_t end) {
        for (auto line = request.find("\r\n"); line < end; line = request.find("\r\n", line + 2))
            for (auto at = line + 2; at < end && request[at] != ':'; ++at)
                request[at] = static_cast<char>(std::tolower(static_cast<unsigned char>(request[at])));
    }

    void read(QTcpSocket& socket) {
        std::string& request = pending_[&socket];
        request += socket.readAll().toStdString();
        const auto end = request.find("\r\n\r\n");
        if (end == std::string::npos) return;
        lowerNames(request, end);
        const auto length = request.find("content-length: ");
        const std::size_t body = length == std::string::npos ? 0 : std::stoul(request.substr(length + 16));
        if (request.size() < end + 4 + body) return;
        requests.push_back(std::exchange(request, {}));
        const std::string& head = requests.back();
        const auto start = head.find(' ') + 1;
        const auto answer = answers.find(head.substr(start, head.find(' ', start) - start));
        if (answer == answers.end()) return;
        socket.write(QByteArray::fromStdString(answer->second));
        socket.disconnectFromHost();
    }

    QTcpServer server_;
    std::map<QTcpSocket*, std::string> pending_;
};

std::string answerOf(const std::string& status, const std::string& body, const std::string& headers = {}) {
    return "HTTP/1.1 " + status + "\r\nConnection: close\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" +
           headers + "\r\n" + body;
}

// The completions come through here; the session posts on the main thread, where the test's loop runs.
struct DirectQueue final : TaskQueue {
    void post(std::function<void()> task) override {
        ++posted;
        task();
    }
    int posted = 0;
};

struct Http : testing::Test {
    DirectQueue queue;
    QtUrlSession session{queue};
    Server server;

    // The body; empty text for none, which no body can be.
    std::string fetch(UrlRequest request) {
        std::optional<std::optional<std::string>> result;
        QEventLoop loop;
        QTimer::singleShot(20'000, &loop, [&] { loop.exit(1); });
        session.dataTask(std::move(request), [&](std::optional<std::string> body) {
            EXPECT_FALSE(result) << "a second completion";
            result = std::move(body);
            loop.quit();
        });
        EXPECT_FALSE(result) << "the completion ran within the call";
        EXPECT_EQ(loop.exec(), 0) << "no completion";
        EXPECT_NE(result, std::optional(std::optional(std::string()))) << "an empty body";
        return result.value_or(std::nullopt).value_or("");
    }
    std::string fetch(const std::string& path, bool withKey = false) {
        UrlRequest request;
        request.url = server.address(path);
        request.timeout = std::chrono::seconds(10);
        if (withKey) request.headers = {{"Authorization", "Bearer SECRET"}};
        return fetch(request);
    }
};

}  // namespace

TEST_F(Http, AnyAnswerWithABodyIsDelivered) {
    const std::string refusal = R"({"text": "Invalid access token"})";
    const std::string large(3'000'000, 'x');
    server.answers = {
        {"/200", answerOf("200 OK", "[1]")},
        {"/large", answerOf("200 OK", large)},
        {"/binary", answerOf("200 OK", std::string("\0\xff\n", 3))},
        {"/401", answerOf("401 Unauthorized", refusal)},
        {"/403", answerOf("403 Forbidden", refusal)},
        {"/404", answerOf("404 Not Found", "<html>")},
        {"/429", answerOf("429 Too Many Requests", refusal)},
        {"/500", answerOf("500 Internal Server Error", "oops")},
        {"/503", answerOf("503 Service Unavailable", "oops")},
    };
    EXPECT_EQ(fetch("/200", true), "[1]");
    EXPECT_EQ(fetch("/large"), large);
    EXPECT_EQ(fetch("/binary"), std::string("\0\xff\n", 3));
    for (const char* path : {"/401", "/403", "/429"}) EXPECT_EQ(fetch(path, true), refusal) << path;
    EXPECT_EQ(fetch("/404"), "<html>");
    EXPECT_EQ(fetch("/500"), "oops");
    EXPECT_EQ(fetch("/503"), "oops");
}

TEST_F(Http, WhatBrokeOrIsEmptyIsNothing) {
    server.answers = {
        {"/empty", answerOf("200 OK", "")},
        {"/204", "HTTP/1.1 204 No Content\r\nConnection: close\r\n\r\n"},
        {"/401", answerOf("401 Unauthorized", "")},
        {"/closed", ""},
        {"/cut", "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: 100\r\n\r\n[1"},
        {"/cut-refusal", "HTTP/1.1 500 Oops\r\nConnection: close\r\nContent-Length: 100\r\n\r\n[1"},
        {"/garbage", "220 mail ready\r\n"},
        {"/loop", answerOf("302 Found", "", "Location: /loop\r\n")},
    };
    for (const char* path : {"/empty", "/204", "/401", "/closed", "/cut", "/cut-refusal", "/garbage", "/loop"})
        EXPECT_EQ(fetch(path), "") << path;

    UrlRequest request;
    request.timeout = std::chrono::seconds(1);
    request.url = server.address("/silent");
    EXPECT_EQ(fetch(request), "");
    quint16 free = 0;
    {
        QTcpServer gone;
        ASSERT_TRUE(gone.listen(QHostAddress::LocalHost));
        free = gone.serverPort();
    }
    request.url = "http://127.0.0.1:" + std::to_string(free) + "/";
    EXPECT_EQ(fetch(request), "");
    request.url = "qrc:/no/such/file.json";
    EXPECT_EQ(fetch(request), "");
    request.url = "unheard:/of";
    EXPECT_EQ(fetch(request), "");
}

TEST_F(Http, EmbeddedFilesComeTheSameWay) {
    UrlRequest request;
    request.url = "qrc:/qt-project.org/styles/commonstyle/images/file-16.png";  // of the toolkit's own
    EXPECT_THAT(fetch(request), testing::StartsWith("\x89PNG"));
    EXPECT_EQ(queue.posted, 1);
}

TEST_F(Http, TheKeyGoesToItsOwnServerOnly) {
    Server other;
    other.answers = {{"/taken", answerOf("200 OK", "from elsewhere")}};
    server.answers = {
        {"/moved", answerOf("302 Found", "", "Location: /here\r\n")},
        {"/here", answerOf("200 OK", "here")},
        {"/away", answerOf("302 Found", "", "Location: " + other.address("/taken") + "\r\n")},
    };
    EXPECT_EQ(fetch("/moved", true), "here");
    EXPECT_THAT(server.requests.back(), HasSubstr("authorization: Bearer SECRET\r\n"));
    EXPECT_EQ(fetch("/away", true), "");
    EXPECT_THAT(other.requests, SizeIs(0));
    EXPECT_EQ(fetch("/away"), "from elsewhere");
    EXPECT_THAT(other.requests, SizeIs(1));

    UrlRequest request;
    request.url = server.address("/away");
    request.headers = {{"authorization", "Bearer SECRET"}};
    EXPECT_EQ(fetch(request), "");
    EXPECT_THAT(other.requests, SizeIs(1));
}

TEST_F(Http, SendsMethodHeadersAndBodyAsGiven) {
    server.answers = {{"/send?ids=1,2", answerOf("200 OK", "thanks")}};
    UrlRequest request;
    request.method = "POST";
    request.url = server.address("/send?ids=1,2");
    request.headers = {{"Content-Type", "application/json"}, {"X-Own", "a"}};
    request.body = R"({"text": "ü"})";
    EXPECT_EQ(fetch(request), "thanks");
    ASSERT_THAT(server.requests, SizeIs(1));
    EXPECT_THAT(server.requests[0], testing::StartsWith("POST /send?ids=1,2 HTTP/1.1\r\n"));
    EXPECT_THAT(server.requests[0],
                testing::AllOf(HasSubstr("content-type: application/json\r\n"), HasSubstr("x-own: a\r\n")));
    EXPECT_THAT(server.requests[0], testing::EndsWith("\r\n\r\n" + request.body));
    EXPECT_THAT(server.requests[0], Not(HasSubstr("authorization")));
}

TEST_F(Http, AStatusTaskTellsTheStatusWhateverTheBody) {
    server.answers = {{"/empty", answerOf("200 OK", "")},
                      {"/201", answerOf("201 Created", "x")},
                      {"/500", answerOf("500 Oops", "x")},
                      {"/broken", "nonsense\r\n\r\n"}};
    UrlRequest request;
    request.method = "POST";
    request.body = "id=1&message=a+b";
    const auto statusOf = [&](const std::string& url) {
        request.url = url;
        std::optional<std::optional<int>> result;
        QEventLoop loop;
        QTimer::singleShot(20'000, &loop, [&] { loop.exit(1); });
        session.statusTask(request, [&](std::optional<int> status) {
            result = status;
            loop.quit();
        });
        EXPECT_EQ(loop.exec(), 0) << "no completion";
        return result.value_or(-1);
    };
    EXPECT_EQ(statusOf(server.address("/empty")), 200);
    EXPECT_EQ(statusOf(server.address("/201")), 201);
    EXPECT_EQ(statusOf(server.address("/500")), 500);
    EXPECT_EQ(statusOf(server.address("/broken")), std::nullopt);
    EXPECT_EQ(statusOf("http://127.0.0.1:1/"), std::nullopt);
    ASSERT_FALSE(server.requests.empty());
    const std::string& sent = server.requests.front();
    EXPECT_TRUE(sent.ends_with("\r\n\r\nid=1&message=a+b")) << sent;
    EXPECT_EQ(sent.find("content-type"), std::string::npos) << sent;
}

TEST_F(Http, ASessionThatEndsDropsItsTasks) {
    int completions = 0;
    {
        QtUrlSession ending(queue);
        UrlRequest request;
        request.url = server.address("/silent");
        ending.dataTask(request, [&](const auto&) { ++completions; });
        QEventLoop loop;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
            if (!server.requests.empty()) loop.quit();
        });
        QTimer::singleShot(20'000, &loop, [&] { loop.exit(1); });
        poll.start(1);
        EXPECT_EQ(loop.exec(), 0);
        ending.dataTask(request, [&](const auto&) { ++completions; });  // not even started
    }
    server.answers = {{"/200", answerOf("200 OK", "[1]")}};
    EXPECT_EQ(fetch("/200"), "[1]");
    EXPECT_EQ(completions, 0);
}

}  // namespace vantor
