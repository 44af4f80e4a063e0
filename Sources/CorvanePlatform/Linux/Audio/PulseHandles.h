// Owners of libpulse's objects, which are used on one thread: that of their main loop.
#pragma once

#include <pulse/pulseaudio.h>

#include <memory>

namespace corvane {

struct PulseRelease {
    void operator()(pa_mainloop* loop) const { pa_mainloop_free(loop); }
    void operator()(pa_proplist* properties) const { pa_proplist_free(properties); }
    void operator()(pa_context* context) const {
        pa_context_set_subscribe_callback(context, nullptr, nullptr);
        pa_context_disconnect(context);
        pa_context_unref(context);
    }
    void operator()(pa_stream* stream) const {
        pa_stream_disconnect(stream);
        pa_stream_unref(stream);
    }
    void operator()(pa_operation* operation) const { pa_operation_unref(operation); }
};

using PulseLoop = std::unique_ptr<pa_mainloop, PulseRelease>;
using PulseProperties = std::unique_ptr<pa_proplist, PulseRelease>;
using PulseContext = std::unique_ptr<pa_context, PulseRelease>;
using PulseStream = std::unique_ptr<pa_stream, PulseRelease>;
using PulseOperation = std::unique_ptr<pa_operation, PulseRelease>;

// Waits for at most so long for something to happen, and lets it happen. False if the loop is broken.
[[nodiscard]] inline bool runOnce(pa_mainloop* loop, int microseconds) {
    return pa_mainloop_prepare(loop, microseconds) >= 0 && pa_mainloop_poll(loop) >= 0 &&
           pa_mainloop_dispatch(loop) >= 0;
}

} // namespace corvane
