#include "CorvaneWorker/Language/HttpExchange.h"

#include <curl/curl.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <new>

namespace corvane {

namespace {

using Clock = std::chrono::steady_clock;
using Easy = std::unique_ptr<CURL, decltype([](CURL* handle) { curl_easy_cleanup(handle); })>;
using Multi = std::unique_ptr<CURLM, decltype([](CURLM* handle) { curl_multi_cleanup(handle); })>;
using Headers = std::unique_ptr<curl_slist, decltype([](curl_slist* list) { curl_slist_free_all(list); })>;

struct Arrival {
    const std::function<void(QByteArrayView)>& sink;
    qint64 room; // bytes that may still come
    Clock::time_point last = Clock::now();
    bool tooLarge = false;
    std::exception_ptr fault; // of the sink; an exception must not pass through the library
};

std::size_t take(const char* bytes, std::size_t size, std::size_t count, void* target) {
    auto& arrival = *static_cast<Arrival*>(target);
    const std::size_t length = size * count;
    arrival.last = Clock::now();
    arrival.room -= static_cast<qint64>(length);
    arrival.tooLarge = arrival.room < 0;
    if (arrival.tooLarge)
        return CURL_WRITEFUNC_ERROR;
    try {
        arrival.sink(QByteArrayView(bytes, static_cast<qsizetype>(length)));
    } catch (...) {
        arrival.fault = std::current_exception();
        return CURL_WRITEFUNC_ERROR;
    }
    return length;
}

template<typename Value>
void set(CURL* handle, CURLoption option, Value value) {
    if (const CURLcode code = curl_easy_setopt(handle, option, value); code != CURLE_OK)
        throw HttpExchangeError(QString::fromUtf8(curl_easy_strerror(code)));
}

Easy prepare(const QByteArray& address, const QByteArray& json, const HttpLimits& limits, curl_slist* headers,
             Arrival& arrival) {
    Easy easy(curl_easy_init());
    if (!easy)
        throw std::bad_alloc();
    CURL* handle = easy.get();
    set(handle, CURLOPT_URL, address.constData());
    set(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    set(handle, CURLOPT_PROXY, ""); // a proxy of the environment would see what was said in the meeting
    set(handle, CURLOPT_FOLLOWLOCATION, 0L);
    set(handle, CURLOPT_NOSIGNAL, 1L);
    set(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits.connect.count()));
    set(handle, CURLOPT_POST, 1L);
    set(handle, CURLOPT_POSTFIELDS, json.constData());
    set(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(json.size()));
    set(handle, CURLOPT_HTTPHEADER, headers);
    set(handle, CURLOPT_WRITEFUNCTION,
        static_cast<curl_write_callback>([](char* bytes, std::size_t size, std::size_t count, void* target) {
            return take(bytes, size, count, target);
        }));
    set(handle, CURLOPT_WRITEDATA, static_cast<void*>(&arrival));
    return easy;
}

QString reason(CURLcode code) {
    switch (code) {
    case CURLE_COULDNT_CONNECT:
        return QStringLiteral("nothing answers there");
    case CURLE_COULDNT_RESOLVE_HOST:
        return QStringLiteral("its host is unknown");
    case CURLE_OPERATION_TIMEDOUT:
        return QStringLiteral("no connection came about in time");
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_GOT_NOTHING:
        return QStringLiteral("the connection was closed in the middle");
    default:
        return QString::fromUtf8(curl_easy_strerror(code));
    }
}

// Runs the transfer to its end. The library's own limits are too coarse: it averages silence over seconds.
CURLcode transfer(CURLM* multi, const HttpLimits& limits, const Arrival& arrival) {
    const Clock::time_point end = Clock::now() + limits.total;
    for (;;) {
        int running = 0;
        if (const CURLMcode code = curl_multi_perform(multi, &running); code != CURLM_OK)
            throw HttpExchangeError(QString::fromUtf8(curl_multi_strerror(code)));
        int queued = 0;
        if (const CURLMsg* message = curl_multi_info_read(multi, &queued))
            return message->data.result;
        const Clock::time_point now = Clock::now();
        if (now >= end)
            throw HttpExchangeError(QStringLiteral("the answer took too long"));
        const Clock::time_point silenceEnd = arrival.last + limits.silence;
        if (now >= silenceEnd)
            throw HttpExchangeError(QStringLiteral("no answer came in time"));
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(std::min(end, silenceEnd) - now);
        curl_multi_poll(multi, nullptr, 0, static_cast<int>(std::min<long>(wait.count(), 1000)), nullptr);
    }
}

} // namespace

int postJson(const QUrl& address, const QByteArray& json, const HttpLimits& limits,
             const std::function<void(QByteArrayView)>& sink) {
    static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
    Headers headers(curl_slist_append(nullptr, "Content-Type: application/json"));
    Multi multi(curl_multi_init());
    if (ready != CURLE_OK || !headers || !multi)
        throw std::bad_alloc();
    // A body of some size would wait for permission first, which not every server gives.
    if (curl_slist_append(headers.get(), "Expect:") == nullptr)
        throw std::bad_alloc();
    Arrival arrival{.sink = sink, .room = limits.answerBytes, .fault = nullptr};
    const Easy easy = prepare(address.toEncoded(), json, limits, headers.get(), arrival);
    if (curl_multi_add_handle(multi.get(), easy.get()) != CURLM_OK)
        throw std::bad_alloc();
    const std::unique_ptr<CURL, std::function<void(CURL*)>> added(
        easy.get(), [&multi](CURL* handle) { curl_multi_remove_handle(multi.get(), handle); });
    const CURLcode code = transfer(multi.get(), limits, arrival);
    if (arrival.fault)
        std::rethrow_exception(arrival.fault);
    if (arrival.tooLarge)
        throw HttpExchangeError(QStringLiteral("the answer is too large"));
    if (code != CURLE_OK)
        throw HttpExchangeError(reason(code));
    long status = 0;
    curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &status);
    return static_cast<int>(status);
}

} // namespace corvane
