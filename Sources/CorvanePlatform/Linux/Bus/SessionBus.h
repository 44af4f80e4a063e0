// The session bus through GLib, for calls that must not outlast a deadline: a thread and a main context for each job,
// and a connection that never ends the process. Any thread.
#pragma once

#include "CorvaneContract/Error.h"
#include "CorvaneContract/Text/UserText.h"

#include <gio/gio.h>

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <thread>

namespace corvane {

struct UnrefObject {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template<typename T>
using GObjectPointer = std::unique_ptr<T, UnrefObject>;

class DeadlineError : public Error {
public:
    using Error::Error;
};

class OwnMainContext {
public:
    OwnMainContext();
    OwnMainContext(const OwnMainContext&) = delete;
    OwnMainContext& operator=(const OwnMainContext&) = delete;
    ~OwnMainContext();

private:
    GMainContext* m_context;
};

// Runs a job on a thread of its own. At the deadline the job is cancelled; one that does not even come back from that
// is left to itself, which is safe as it owns everything it works on. Throws what the job throws, DeadlineError, and
// std::system_error if there is no thread to be had.
template<typename Result>
Result within(std::chrono::milliseconds deadline, std::function<Result(GCancellable*)> job) {
    constexpr std::chrono::milliseconds timeToCancel(500);
    const std::shared_ptr<GCancellable> cancellable(g_cancellable_new(), UnrefObject());
    std::packaged_task<Result()> task([job = std::move(job), cancellable] {
        const OwnMainContext context;
        return job(cancellable.get());
    });
    auto result = task.get_future();
    std::thread(std::move(task)).detach();
    if (result.wait_for(deadline) != std::future_status::ready) {
        g_cancellable_cancel(cancellable.get());
        if (result.wait_for(timeToCancel) != std::future_status::ready)
            throw DeadlineError(UserText::tr("No answer came in time."));
    }
    return result.get();
}

// Nothing if there is no bus, or if it was cancelled.
[[nodiscard]] GObjectPointer<GDBusConnection> connectToSessionBus(GCancellable* cancellable);

} // namespace corvane
