// A long sound rendered ahead of its use: stretches of it are made side by side, each renderer on a thread of its own,
// and handed out in order. By a few stretches at the most, so that memory stays bounded. Made, used and destroyed on
// one thread.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

namespace corvane {

class RenderAhead {
public:
    // Fills the samples of the stretch that begins at `start`. A renderer is given ever later stretches, whichever is
    // next when it is free. May throw.
    using Renderer = std::function<void(std::size_t start, std::span<float> samples)>;

    // `total` samples in stretches of `stretchSamples`, of which the last may be shorter.
    RenderAhead(std::vector<Renderer> renderers, std::size_t stretchSamples, std::size_t total);
    ~RenderAhead();
    RenderAhead(const RenderAhead&) = delete;
    RenderAhead& operator=(const RenderAhead&) = delete;

    // The next stretch, valid until the next call; empty behind the last. Throws what rendering it threw.
    [[nodiscard]] std::span<const float> next();

private:
    struct Stretch {
        std::vector<float> samples;
        bool isRendered = false;
        std::exception_ptr failure;
    };

    void renderWith(const Renderer& render);
    [[nodiscard]] std::span<float> samplesOf(std::size_t index);
    [[nodiscard]] Stretch& at(std::size_t index) { return m_stretches[index % m_stretches.size()]; }

    std::vector<Renderer> m_renderers;
    std::size_t m_stretchSamples;
    std::size_t m_total;
    std::vector<Stretch> m_stretches; // the samples belong to the renderer at work or to the user
    std::mutex m_lock;                // guards the rest of the stretches and what follows
    std::condition_variable m_changed;
    std::size_t m_begun = 0; // stretches given to renderers in all
    std::size_t m_taken = 0; // stretches handed out in all; the last of them is in use
    bool m_stopped = false;
    std::vector<std::thread> m_threads;
};

} // namespace corvane
