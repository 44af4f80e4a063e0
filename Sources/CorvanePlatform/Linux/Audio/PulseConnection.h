// A connection to the sound server, and an account of its devices that is renewed whenever something changes there.
// Made and used on the thread of its main loop; owned by whoever runs that loop.
#pragma once

#include "CorvaneContract/Text/UserText.h"
#include "CorvanePlatform/Linux/Audio/PulseHandles.h"
#include "CorvanePlatform/Linux/Audio/PulseServer.h"

#include <chrono>
#include <optional>

namespace corvane {

class PulseConnection {
public:
    enum class Changes { once, followed }; // whether the account is renewed

    // Begins to connect, to the server that libpulse's own rules name; never starts one.
    PulseConnection(pa_mainloop* loop, Changes changes);
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;

    [[nodiscard]] pa_context* context() const { return m_context.get(); }
    [[nodiscard]] bool isReady() const { return pa_context_get_state(m_context.get()) == PA_CONTEXT_READY; }
    [[nodiscard]] bool hasFailed() const;
    // Has to be called after each round of the loop. The newest account, once.
    [[nodiscard]] std::optional<PulseServer> takeServer();
    // Asks for a new account.
    void renew() { m_isOutdated = true; }

private:
    enum class Query { none, server, sinks, sources };

    void ask(Query query, pa_operation* operation);
    static void onServer(pa_context* context, const pa_server_info* info, void* self);
    static void onSink(pa_context* context, const pa_sink_info* info, int end, void* self);
    static void onSource(pa_context* context, const pa_source_info* info, int end, void* self);

    PulseContext m_context;
    Changes m_changes;
    bool m_isSubscribed = false;
    bool m_isOutdated = true;
    bool m_isComplete = false;
    Query m_query = Query::none;
    PulseServer m_server;
};

// The account of a server, through a connection of its own. Throws AudioInputError after at most `limit`.
[[nodiscard]] PulseServer askServer(std::chrono::milliseconds limit);

namespace pulsewords {
[[nodiscard]] inline QString noServer() {
    return UserText::tr("There is no sound server.");
}
[[nodiscard]] inline QString noAnswer() {
    return UserText::tr("The sound server does not answer.");
}
[[nodiscard]] inline QString noDevice(CaptureRole role) {
    return role == CaptureRole::microphone ? UserText::tr("There is no microphone.")
                                           : UserText::tr("There is no sound output.");
}
} // namespace pulsewords

} // namespace corvane
