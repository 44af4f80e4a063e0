// What the user looks at, as far as the desktop tells: the application in front, its window and, of a browser, its tab.
// The application owns one reader, on the main thread.
#pragma once

#include <QFuture>
#include <QString>

#include <optional>

namespace corvane {

struct BrowserTab {
    QString url; // as the browser gave it, never empty
    QString title;

    friend bool operator==(const BrowserTab&, const BrowserTab&) = default;
};

// Facts alone; what they mean is decided in Calls.
struct FrontmostApplication {
    // One of those that the rules for calls name, where the desktop's own identifier of the application stands for it;
    // otherwise the desktop's own. Empty if the desktop knows none.
    QString bundleIdentifier;
    std::optional<QString> localizedName; // as a user knows the application
    std::optional<qint64> processIdentifier;
    std::optional<QString> windowTitle;
    // Only of a browser that can be asked, and never of a private window.
    std::optional<BrowserTab> activeTab;

    friend bool operator==(const FrontmostApplication&, const FrontmostApplication&) = default;
};

class FrontmostApplicationReader {
public:
    virtual ~FrontmostApplicationReader() = default; // waits for nothing; what is under way is dropped

    // Looks now, beside the main loop, and returns at once. The future finishes within a second on the main loop, with
    // nothing if no application is in front or it cannot be known. Whatever fails reads as absent.
    [[nodiscard]] virtual QFuture<std::optional<FrontmostApplication>> read() = 0;
};

} // namespace corvane
