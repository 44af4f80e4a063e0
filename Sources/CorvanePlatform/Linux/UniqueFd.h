// A file descriptor that is closed with its owner. Not shared between threads.
#pragma once

#include <unistd.h>

#include <utility>

namespace corvane {

class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : m_fd(fd) {}
    UniqueFd(UniqueFd&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        if (this != &other) {
            reset();
            m_fd = std::exchange(other.m_fd, -1);
        }
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
    ~UniqueFd() { reset(); }

    [[nodiscard]] int get() const { return m_fd; }
    [[nodiscard]] explicit operator bool() const { return m_fd >= 0; }
    int release() { return std::exchange(m_fd, -1); }
    void reset() {
        if (m_fd >= 0)
            ::close(std::exchange(m_fd, -1));
    }

private:
    int m_fd = -1;
};

} // namespace corvane
