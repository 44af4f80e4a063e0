#include "CorvanePlatform/Linux/Audio/PulseConnection.h"

#include <utility>

namespace corvane {

namespace {

std::string text(const char* words) {
    return words ? words : "";
}

} // namespace

PulseConnection::PulseConnection(pa_mainloop* loop, Changes changes) : m_changes(changes) {
    const PulseProperties properties(pa_proplist_new());
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_NAME, "Corvane");
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ICON_NAME, "corvane");
    m_context.reset(pa_context_new_with_proplist(pa_mainloop_get_api(loop), nullptr, properties.get()));
    if (!m_context)
        throw AudioInputError(pulsewords::noServer());
    pa_context_set_subscribe_callback(
        m_context.get(),
        [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) {
            static_cast<PulseConnection*>(self)->m_isOutdated = true;
        },
        this);
    // A failure shows in the state.
    pa_context_connect(m_context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
}

bool PulseConnection::hasFailed() const {
    return !PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context.get()));
}

std::optional<PulseServer> PulseConnection::takeServer() {
    if (!isReady())
        return std::nullopt;
    if (m_changes == Changes::followed && !m_isSubscribed) {
        constexpr auto subjects = static_cast<pa_subscription_mask_t>(
            PA_SUBSCRIPTION_MASK_SERVER | PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SOURCE);
        const PulseOperation operation(pa_context_subscribe(m_context.get(), subjects, nullptr, nullptr));
        m_isSubscribed = true;
    }
    if (m_query == Query::none && m_isOutdated) {
        m_isOutdated = false;
        m_isComplete = false;
        m_server = {};
        ask(Query::server, pa_context_get_server_info(m_context.get(), onServer, this));
    }
    return std::exchange(m_isComplete, false) ? std::optional(std::move(m_server)) : std::nullopt;
}

void PulseConnection::ask(Query query, pa_operation* operation) {
    m_query = operation ? query : Query::none;
    if (operation)
        pa_operation_unref(operation);
}

void PulseConnection::onServer(pa_context* context, const pa_server_info* info, void* self) {
    auto& connection = *static_cast<PulseConnection*>(self);
    PulseServer& server = connection.m_server;
    connection.m_query = Query::none;
    if (!info)
        return;
    server.text = QString::fromUtf8(info->server_name) + QLatin1Char(' ') + QString::fromUtf8(info->server_version);
    server.defaultSink = text(info->default_sink_name);
    server.defaultSource = text(info->default_source_name);
    connection.ask(Query::sinks, pa_context_get_sink_info_list(context, onSink, self));
}

void PulseConnection::onSink(pa_context* context, const pa_sink_info* info, int end, void* self) {
    auto& connection = *static_cast<PulseConnection*>(self);
    if (end == 0)
        connection.m_server.sinks.push_back({.name = text(info->name),
                                             .monitor = text(info->monitor_source_name),
                                             .description = QString::fromUtf8(info->description),
                                             .samples = info->sample_spec,
                                             .channels = info->channel_map});
    else
        connection.ask(Query::sources, pa_context_get_source_info_list(context, onSource, self));
}

void PulseConnection::onSource(pa_context*, const pa_source_info* info, int end, void* self) {
    auto& connection = *static_cast<PulseConnection*>(self);
    if (end != 0) {
        connection.m_query = Query::none;
        connection.m_isComplete = end > 0;
    } else if (info->monitor_of_sink == PA_INVALID_INDEX && !std::string_view(info->name).ends_with(".monitor")) {
        connection.m_server.sources.push_back({.name = text(info->name),
                                               .monitor = {},
                                               .description = QString::fromUtf8(info->description),
                                               .samples = info->sample_spec,
                                               .channels = info->channel_map});
    }
}

PulseServer askServer(std::chrono::milliseconds limit) {
    using Clock = std::chrono::steady_clock;
    const PulseLoop loop(pa_mainloop_new());
    PulseConnection connection(loop.get(), PulseConnection::Changes::once);
    for (const auto end = Clock::now() + limit; Clock::now() < end;) {
        if (auto server = connection.takeServer())
            return *server;
        constexpr int microseconds = 50'000;
        if (connection.hasFailed() || !runOnce(loop.get(), microseconds))
            throw AudioInputError(pulsewords::noServer());
    }
    throw AudioInputError(pulsewords::noAnswer());
}

} // namespace corvane
