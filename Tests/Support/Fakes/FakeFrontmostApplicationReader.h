// A desktop with one application in front, which a test chooses. Main thread.
#pragma once

#include "CorvaneCore/Interfaces/FrontmostApplication.h"

#include <QPromise>

#include <memory>
#include <utility>

namespace corvane {

[[nodiscard]] inline FrontmostApplication inFront(QString identifier, std::optional<QString> name,
                                                  std::optional<QString> windowTitle = {},
                                                  std::optional<BrowserTab> tab = {}) {
    return {.bundleIdentifier = std::move(identifier),
            .localizedName = std::move(name),
            .processIdentifier = {},
            .windowTitle = std::move(windowTitle),
            .activeTab = std::move(tab)};
}

class FakeFrontmostApplicationReader final : public FrontmostApplicationReader {
public:
    std::optional<FrontmostApplication> front;
    int reads = 0;

    [[nodiscard]] QFuture<std::optional<FrontmostApplication>> read() override {
        ++reads;
        if (!m_isSlow)
            return QtFuture::makeReadyFuture(front);
        m_owed = std::make_unique<QPromise<std::optional<FrontmostApplication>>>();
        m_owed->start();
        return m_owed->future();
    }

    // From now on an answer comes when the test says so, or never.
    void beSlow() { m_isSlow = true; }
    void answer() {
        m_owed->addResult(front);
        m_owed->finish();
    }
    void drop() { m_owed.reset(); }

private:
    bool m_isSlow = false;
    std::unique_ptr<QPromise<std::optional<FrontmostApplication>>> m_owed;
};

} // namespace corvane
