// Lengths by path, as the test says them. Like its original it knows nothing of a file that is not there.
#pragma once

#include "CorvaneCore/Interfaces/AudioFileInspector.h"

#include <QFileInfo>

#include <map>
#include <mutex>

namespace corvane {

class FakeAudioFileInspector final : public AudioFileInspector {
public:
    [[nodiscard]] std::optional<double> durationSeconds(const QString& path) const override {
        const std::lock_guard guard(m_mutex);
        const auto length = m_seconds.find(path);
        return length != m_seconds.end() && QFileInfo(path).isFile() ? std::optional(length->second) : std::nullopt;
    }
    void setDuration(const QString& path, double seconds) {
        const std::lock_guard guard(m_mutex);
        m_seconds[path] = seconds;
    }

private:
    mutable std::mutex m_mutex;
    std::map<QString, double> m_seconds;
};

} // namespace corvane
