// Data tasks against a real server on this machine.
#include <gmock/gmock.h>

#include <QtCore/QEventLoop>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>
#include <map>

#include "platform/qt/QtUrlSession.h"

namespace vantor {

namespace {

using testing::HasSubstr;
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
    // The headers in small letters, since newer toolkits write their names so.
    std::vector<std::string> requests;
    std::function<void()> heard = [] {};

private:
    void read(QTcpSocket& socket) {
        QByteArray& request = pending_[&socket];
        request += socket.readAll();
        const auto end = request.indexOf("\r\n\r\n");
        if (end < 0) return;
        const QByteArray head = request.first(end + 2).toLower();
        const auto length = head.indexOf("content-length: ");
        const auto body = length < 0 ? 0 : head.sliced(length + 16, head.indexOf('\r', length) - length - 16).toInt();
        if (request.size() < end + 4 + body) return;
        requests.push_back((head + request.sliced(end + 2)).toStdString());
        const auto answer = answers.find(head.split(' ').at(1).toStdString());
        pending_.erase(&socket);
        if (answer != answers.end()) {
            socket.write(QByteArray::fromStdString(answer->second));
            socket.disconnectFromHost();
        }
        heard();
    }

    QTcpServer server_;
    std::map<QTcpSocket*, QByteArray> pending_;
};

std::string answerOf(const std::string& status, const std::string& body, const std::string& headers = {}) {
    return "HTTP/1.1 " + status + "\r\nConnection: close\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" +
           headers + "\r\n" + body;
}

// The completions come through here; the session posts on the main thread, where the test's loop runs.
struct DirectQueue final : TaskQueue {
    void post(std::function<void()> task) override { task(); }
};

const std::string none = "none";

struct Http : testing::Test {
    DirectQueue queue;
    QtUrlSession session{queue};
    Server server;

    static UrlRequest to(const std::string& url) {
        UrlRequest request;
        request.url = url;
        request.timeout = std::chrono::seconds(10);
        return request;
    }
    // What the task's one completion brings, which comes after the call.
    template <typename Answer, typename Begin>
    static Answer awaited(const Begin& begin) {
        std::optional<Answer> result;
        QEventLoop loop;
        begin([&](Answer answer) {
            EXPECT_FALSE(result) << "a second completion";
            result = std::move(answer);
            loop.quit();
        });
        EXPECT_FALSE(result) << "the completion ran within the call";
        loop.exec();
        return *result;
    }
    std::string fetch(const UrlRequest& request) {
        return awaited<std::optional<std::string>>([&](auto done) { session.dataTask(request, done); }).value_or(none);
    }
    std::string fetch(const std::string& path, const char* keyHeader = nullptr) {
        UrlRequest request = to(server.address(path));
        if (keyHeader) request.headers = {{keyHeader, "Bearer SECRET"}};
        return fetch(request);
    }
};

}  // namespace

TEST_F(Http, AnyAnswerWithABodyIsDelivered) {
    for (const auto& [status, body] : {std::pair<std::string, std::string>("200 OK", "[1]"),
                                       {"200 OK", std::string(3'000'000, 'x')},
                                       {"200 OK", std::string("\0\xff\n", 3)},
                                       {"401 Unauthorized", R"({"text": "Invalid access token"})"},
                                       {"403 Forbidden", "oops"},
                                       {"404 Not Found", "<html>"},
                                       {"429 Too Many Requests", "oops"},
                                       {"500 Internal Server Error", "oops"},
                                       {"503 Service Unavailable", "oops"}}) {
        server.answers = {{"/it", answerOf(status, body)}};
        EXPECT_EQ(fetch("/it", "Authorization"), body) << status;
    }
    // Embedded files come the same way.
    EXPECT_THAT(fetch(to("qrc:/texts/support.json")), testing::StartsWith("{"));
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
    for (const auto& [path, bytes] : server.answers) EXPECT_EQ(fetch(path), none) << path;
    UrlRequest silent = to(server.address("/silent"));
    silent.timeout = std::chrono::seconds(1);
    EXPECT_EQ(fetch(silent), none);
    for (const char* nobody : {"http://127.0.0.1:1/", "qrc:/no/such/file.json", "unheard:/of"})
        EXPECT_EQ(fetch(to(nobody)), none) << nobody;
}

TEST_F(Http, TheKeyGoesToItsOwnServerOnly) {
    Server other;
    other.answers = {{"/taken", answerOf("200 OK", "from elsewhere")}};
    server.answers = {
        {"/moved", answerOf("302 Found", "", "Location: /here\r\n")},
        {"/here", answerOf("200 OK", "here")},
        {"/away", answerOf("302 Found", "", "Location: " + other.address("/taken") + "\r\n")},
    };
    for (const char* header : {"Authorization", "authorization"}) {
        EXPECT_EQ(fetch("/moved", header), "here");
        EXPECT_THAT(server.requests.back(), HasSubstr("\r\nauthorization: bearer secret\r\n"));
        EXPECT_EQ(fetch("/away", header), none);
    }
    EXPECT_THAT(other.requests, SizeIs(0));
    EXPECT_EQ(fetch("/away"), "from elsewhere");
    EXPECT_THAT(other.requests, SizeIs(1));
}

TEST_F(Http, SendsMethodHeadersAndBodyAsGiven) {
    server.answers = {{"/send?ids=1,2", answerOf("200 OK", "thanks")}};
    UrlRequest request = to(server.address("/send?ids=1,2"));
    request.method = "POST";
    request.headers = {{"Content-Type", "application/json"}, {"X-Own", "a"}};
    request.body = R"({"text": "Ü"})";
    EXPECT_EQ(fetch(request), "thanks");
    ASSERT_THAT(server.requests, SizeIs(1));
    EXPECT_THAT(server.requests[0],
                testing::AllOf(testing::StartsWith("post /send?ids=1,2 http/1.1\r\n"),
                               HasSubstr("content-type: application/json\r\n"), HasSubstr("x-own: a\r\n"),
                               testing::EndsWith("\r\n\r\n" + request.body), testing::Not(HasSubstr("authorization"))));
}

TEST_F(Http, AStatusTaskTellsTheStatusWhateverTheBody) {
    server.answers = {{"/empty", answerOf("200 OK", "")},
                      {"/201", answerOf("201 Created", "x")},
                      {"/500", answerOf("500 Oops", "x")},
                      {"/broken", "nonsense\r\n\r\n"},
                      {"/cut", "HTTP/1.1 500 Oops\r\nConnection: close\r\nContent-Length: 100\r\n\r\n[1"}};
    const auto statusOf = [&](const std::string& url) {
        UrlRequest request = to(url);
        request.method = "POST";
        request.body = "id=1&message=a+b";
        return awaited<std::optional<int>>([&](auto done) { session.statusTask(request, done); });
    };
    EXPECT_EQ(statusOf(server.address("/empty")), 200);
    const std::string& sent = server.requests.at(0);
    EXPECT_TRUE(sent.ends_with("\r\n\r\nid=1&message=a+b")) << sent;
    EXPECT_EQ(sent.find("content-type"), std::string::npos) << sent;
    EXPECT_EQ(statusOf(server.address("/201")), 201);
    EXPECT_EQ(statusOf(server.address("/500")), 500);
    for (const std::string& url :
         {server.address("/broken"), server.address("/cut"), std::string("http://127.0.0.1:1/")})
        EXPECT_EQ(statusOf(url), std::nullopt) << url;
}

TEST_F(Http, ASessionThatEndsDropsItsTasks) {
    int completions = 0;
    {
        QtUrlSession ending(queue);
        QEventLoop loop;
        server.heard = [&] { loop.quit(); };
        ending.dataTask(to(server.address("/silent")), [&](const auto&) { ++completions; });
        loop.exec();
        server.heard = [] {};
        ending.dataTask(to(server.address("/silent")), [&](const auto&) { ++completions; });  // not even started
    }
    server.answers = {{"/200", answerOf("200 OK", "[1]")}};
    EXPECT_EQ(fetch("/200"), "[1]");
    EXPECT_EQ(completions, 0);
}

}  // namespace vantor
