#include "CorvaneCore/Recording/RenderAhead.h"

#include <algorithm>

namespace corvane {

RenderAhead::RenderAhead(std::vector<Renderer> renderers, std::size_t stretchSamples, std::size_t total)
    : m_renderers(std::move(renderers)),
      m_stretchSamples(stretchSamples),
      m_total(total),
      // One in the making for every renderer, one in use, one ready.
      m_stretches(m_renderers.size() + 2) {
    for (Stretch& stretch : m_stretches)
        stretch.samples.resize(std::min(stretchSamples, total));
    for (const Renderer& render : m_renderers)
        m_threads.emplace_back([this, &render] { renderWith(render); });
}

RenderAhead::~RenderAhead() {
    {
        const std::lock_guard lock(m_lock);
        m_stopped = true;
    }
    m_changed.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

std::span<const float> RenderAhead::next() {
    std::unique_lock lock(m_lock);
    if (m_taken * m_stretchSamples >= m_total)
        return {};
    Stretch& stretch = at(m_taken);
    m_changed.wait(lock, [&] { return stretch.isRendered; });
    if (stretch.failure)
        std::rethrow_exception(stretch.failure);
    stretch.isRendered = false;
    ++m_taken;
    m_changed.notify_all();
    return samplesOf(m_taken - 1);
}

void RenderAhead::renderWith(const Renderer& render) {
    std::unique_lock lock(m_lock);
    while (m_begun * m_stretchSamples < m_total) {
        // The stretch handed out last is still in use.
        if (!m_stopped && m_begun >= m_taken + m_stretches.size() - 1) {
            m_changed.wait(lock);
            continue;
        }
        if (m_stopped)
            return;
        const std::size_t index = m_begun++;
        std::exception_ptr failure;
        lock.unlock();
        try {
            render(index * m_stretchSamples, samplesOf(index));
        } catch (...) {
            failure = std::current_exception();
        }
        lock.lock();
        at(index).isRendered = true;
        at(index).failure = failure;
        m_changed.notify_all();
        if (failure)
            return;
    }
}

std::span<float> RenderAhead::samplesOf(std::size_t index) {
    return std::span(at(index).samples).first(std::min(m_stretchSamples, m_total - index * m_stretchSamples));
}

} // namespace corvane
