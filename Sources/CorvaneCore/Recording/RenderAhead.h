// A stream of mono sound rendered ahead of its use on a thread of its own, by a few blocks at the most, so that the
// conversion of one source runs beside that of the other. Made, used and destroyed on one thread.
#pragma once

#include "CorvaneCore/Recording/MonoStream.h"

#include <array>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace corvane {

class RenderAhead {
public:
    // Borrows the stream, which nobody else may touch meanwhile.
    RenderAhead(MonoStream& stream, std::size_t blockFrames);
    ~RenderAhead();
    RenderAhead(const RenderAhead&) = delete;
    RenderAhead& operator=(const RenderAhead&) = delete;

    // The next block, valid until the next call; behind the end of the source there is silence. Throws what reading the
    // source threw.
    [[nodiscard]] const std::vector<float>& next();

private:
    void renderAll();

    MonoStream& m_stream;
    std::array<std::vector<float>, 4> m_blocks;
    std::mutex m_lock; // guards what follows
    std::condition_variable m_changed;
    std::size_t m_rendered = 0; // blocks rendered in all
    std::size_t m_taken = 0;    // blocks handed out in all; the last of them is in use
    bool m_stopped = false;
    std::exception_ptr m_failure;
    std::thread m_thread;
};

} // namespace corvane
