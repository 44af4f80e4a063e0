// An Ollama for tests: it listens on the loopback, has models or not, says what it is told to say, and behaves as badly
// as it is told to. It answers on threads of its own, so that the asking side may block; every function may be called
// from any thread.
#pragma once

#include "CorvaneContract/Json/JSONValue.h"

#include <QByteArray>
#include <QString>

#include <condition_variable>
#include <deque>
#include <functional>
#include <list>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace corvane::test {

enum class Manner {
    stream,       // in pieces of a few characters, as Ollama does
    single,       // one object, spread over lines
    trickle,      // a byte at a time and never to the end
    stall,        // half of the answer, then nothing
    silent,       // nothing at all
    closeEarly,   // half of the answer, then the end
    cutStream,    // without the object that says "done"
    failMidway,   // an object with an error in the stream
    serverError,  // status 500
    refuseThink,  // status 400 if the request has the word "think"
    redirect,     // status 302 to another path of the same server
    flood,        // thirty megabytes
    endlessWords, // a stream of words without an end
    webPage,      // status 200 and HTML
};

struct Turn {
    QString words;
    Manner manner = Manner::stream;
};

class FakeOllama {
public:
    FakeOllama();
    ~FakeOllama(); // ends every connection
    FakeOllama(const FakeOllama&) = delete;
    FakeOllama& operator=(const FakeOllama&) = delete;

    [[nodiscard]] QString endpoint() const;
    // What is said to the next request that has no turn yet. Behind the last turn it is said again and again.
    void say(const QString& words, Manner manner = Manner::stream);

    struct Request {
        QByteArray target;
        JSONValue::Object body;
    };
    [[nodiscard]] std::vector<Request> requests() const;

    // Both to be set before the first request.
    std::set<QString> models{QStringLiteral("qwen3:1.7b")};
    std::function<void()> beforeAnswer = [] {}; // called when a request has come, on a thread of the server's

private:
    void welcome();
    void serve(int connection);
    void perform(int connection, const Turn& turn, const Request& request);
    [[nodiscard]] Turn nextTurn();
    bool send(int connection, const QByteArray& bytes);
    void wait(int connection); // until either side ends

    int m_listener = -1;
    int m_port = 0;
    int m_wake[2] = {-1, -1};
    mutable std::mutex m_mutex; // guards what follows
    std::deque<Turn> m_turns;
    Turn m_last;
    std::vector<Request> m_requests;
    std::list<std::thread> m_servers;
    std::thread m_welcomer;
};

} // namespace corvane::test
