// Which applications of this desktop are those that the rules for calls name, and which of them can be asked for their
// tab. Pure functions over tables, any thread.
#pragma once

#include "CorvanePlatform/Linux/Frontmost/FrontWindow.h"

#include <QString>

#include <optional>
#include <vector>

namespace corvane {

enum class Browser { chromium, chrome, chromeUnstable, edge, brave };

// An ordinary window has the browser's name in its title; one of a web application has not.
enum class BrowserWindow { ordinary, webApplication };

struct KnownApplication {
    QString identifier; // as the rules name it
    std::optional<Browser> browser;
    BrowserWindow browserWindow = BrowserWindow::ordinary;

    friend bool operator==(const KnownApplication&, const KnownApplication&) = default;
};

[[nodiscard]] std::optional<KnownApplication> knownApplication(const FrontWindow& window);

// As titles and the accessibility bus spell it, in every language; without the channel (“Beta”).
[[nodiscard]] std::vector<QString> productNames(Browser browser);

} // namespace corvane
