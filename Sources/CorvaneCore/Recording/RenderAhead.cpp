#include "CorvaneCore/Recording/RenderAhead.h"

#include <algorithm>

namespace corvane {

RenderAhead::RenderAhead(MonoStream& stream, std::size_t blockFrames) : m_stream(stream) {
    for (auto& block : m_blocks)
        block.resize(blockFrames);
    m_thread = std::thread([this] { renderAll(); });
}

RenderAhead::~RenderAhead() {
    {
        const std::lock_guard lock(m_lock);
        m_stopped = true;
    }
    m_changed.notify_all();
    m_thread.join();
}

const std::vector<float>& RenderAhead::next() {
    std::unique_lock lock(m_lock);
    m_changed.wait(lock, [this] { return m_rendered > m_taken || m_failure; });
    if (m_rendered == m_taken)
        std::rethrow_exception(m_failure);
    const std::vector<float>& block = m_blocks[m_taken % m_blocks.size()];
    ++m_taken;
    m_changed.notify_all();
    return block;
}

void RenderAhead::renderAll() {
    try {
        for (std::size_t index = 0;; ++index) {
            {
                std::unique_lock lock(m_lock);
                // The block handed out last is still in use.
                m_changed.wait(lock, [&] { return m_stopped || index < m_taken + m_blocks.size() - 1; });
                if (m_stopped)
                    return;
            }
            auto& block = m_blocks[index % m_blocks.size()];
            const std::size_t filled = m_stream.read(block);
            std::fill(block.begin() + static_cast<std::ptrdiff_t>(filled), block.end(), 0.0F);
            const std::lock_guard lock(m_lock);
            m_rendered = index + 1;
            m_changed.notify_all();
        }
    } catch (...) {
        const std::lock_guard lock(m_lock);
        m_failure = std::current_exception();
        m_changed.notify_all();
    }
}

} // namespace corvane
