// HTTP without a network: a function answers, on the main loop, as the real client does. It remembers what was asked.
// Main thread.
#pragma once

#include "Support/FakeNotionService.h"

#include "CorvaneCore/Interfaces/HttpClient.h"

#include <QObject>
#include <QPromise>

#include <deque>
#include <functional>
#include <memory>

namespace corvane {

class FakeHttpClient final : public HttpClient {
public:
    // What it throws is the outcome.
    using Handler = std::function<HttpAnswer(const HttpRequest&)>;

    explicit FakeHttpClient(Handler handler) : m_handler(std::move(handler)) {}
    // `service` must outlive it.
    explicit FakeHttpClient(FakeNotionService& service)
        : m_handler([&service](const HttpRequest& request) { return service.answer(received(request)); }) {}

    std::vector<HttpRequest> requests;

    // Requests wait from here on, until they are let go.
    void hold() { m_holds = true; }
    void release() {
        m_holds = false;
        answerWaiting();
    }

    [[nodiscard]] QFuture<Outcome<HttpAnswer>> send(const HttpRequest& request) override {
        requests.push_back(request);
        m_waiting.push_back({request, std::make_unique<Promise>()});
        m_waiting.back().promise->start();
        const auto future = m_waiting.back().promise->future();
        QMetaObject::invokeMethod(
            &m_loop, [this] { answerWaiting(); }, Qt::QueuedConnection);
        return future;
    }

    // As a server gets it.
    [[nodiscard]] static ReceivedRequest received(const HttpRequest& request) {
        return {.method = request.method,
                .target = request.url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority),
                .headers = request.headers,
                .body = request.body.value_or(QByteArray())};
    }

private:
    using Promise = QPromise<Outcome<HttpAnswer>>;

    struct Waiting {
        HttpRequest request;
        std::unique_ptr<Promise> promise;
    };

    void answerWaiting() {
        while (!m_holds && !m_waiting.empty()) {
            const Waiting next = std::move(m_waiting.front());
            m_waiting.pop_front();
            if (next.promise->isCanceled())
                continue;
            next.promise->addResult(outcomeOf([&] { return answer(next.request); }));
            next.promise->finish();
        }
    }

    [[nodiscard]] HttpAnswer answer(const HttpRequest& request) const {
        HttpAnswer answer = m_handler(request);
        if (answer.body.size() > request.maximumAnswerBytes)
            throw HttpError(HttpError::Kind::tooLarge, QStringLiteral("The answer is too large."));
        return answer;
    }

    Handler m_handler;
    bool m_holds = false;
    std::deque<Waiting> m_waiting;
    QObject m_loop; // the target of calls on the main loop
};

} // namespace corvane
