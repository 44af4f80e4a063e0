#include "CorvanePlatform/Linux/Frontmost/KnownApplications.h"

#include <QStringView>

#include <algorithm>
#include <array>

namespace corvane {

namespace {

struct ApplicationRow {
    const char* desktopName = "";
    const char* identifier = "";
    std::optional<Browser> browser = std::nullopt;
};

constexpr const char* zoom = "us.zoom.xos";
constexpr const char* teams = "com.microsoft.teams2";
constexpr const char* slack = "com.tinyspeck.slackmacgap";
constexpr const char* chrome = "com.google.Chrome";
constexpr const char* chromeCanary = "com.google.Chrome.canary";
constexpr const char* edge = "com.microsoft.edgemac";
constexpr const char* brave = "com.brave.Browser";

// Window classes, application ids, Flatpak ids, and the names of programs and of accessible applications for desktops
// that tell no more. In lower case.
constexpr std::array applications{
    ApplicationRow{"zoom", zoom},
    ApplicationRow{"us.zoom.zoom", zoom},
    ApplicationRow{"teams-for-linux", teams},
    ApplicationRow{"com.github.ismaelmartinez.teams_for_linux", teams},
    ApplicationRow{"microsoft teams", teams},
    ApplicationRow{"microsoft teams - preview", teams},
    ApplicationRow{"slack", slack},
    ApplicationRow{"com.slack.slack", slack},
    ApplicationRow{"chromium", chrome, Browser::chromium},
    ApplicationRow{"chromium-browser", chrome, Browser::chromium},
    ApplicationRow{"org.chromium.chromium", chrome, Browser::chromium},
    ApplicationRow{"google-chrome", chrome, Browser::chrome},
    ApplicationRow{"chrome", chrome, Browser::chrome},
    ApplicationRow{"google-chrome-beta", chrome, Browser::chrome},
    ApplicationRow{"google chrome", chrome, Browser::chrome},
    ApplicationRow{"com.google.chrome", chrome, Browser::chrome},
    ApplicationRow{"google-chrome-unstable", chromeCanary, Browser::chromeUnstable},
    ApplicationRow{"google-chrome-canary", chromeCanary, Browser::chromeUnstable},
    ApplicationRow{"com.google.chromedev", chromeCanary, Browser::chromeUnstable},
    ApplicationRow{"microsoft-edge", edge, Browser::edge},
    ApplicationRow{"microsoft-edge-beta", edge, Browser::edge},
    ApplicationRow{"microsoft-edge-dev", edge, Browser::edge},
    ApplicationRow{"microsoft edge", edge, Browser::edge},
    ApplicationRow{"msedge", edge, Browser::edge},
    ApplicationRow{"com.microsoft.edge", edge, Browser::edge},
    ApplicationRow{"brave-browser", brave, Browser::brave},
    ApplicationRow{"brave-browser-beta", brave, Browser::brave},
    ApplicationRow{"brave-browser-nightly", brave, Browser::brave},
    ApplicationRow{"brave", brave, Browser::brave},
    ApplicationRow{"com.brave.browser", brave, Browser::brave},
};

// Installed web applications of a service that has an identifier of its own. Chromium makes the id out of the
// application's manifest: the manifest's id, an absolute address, is hashed twice with SHA-256, and the first 32
// hexadecimal digits are written with the letters a to p. Only ids stand here whose address is known and gives the id
// by that rule. Google Meet's, kjgfgldnnfoeklkmfkjfagphfepbbdan of https://meet.google.com/landing?lfhs=2, is left out
// on purpose: that service is recognised by the address, and so its window is read as a browser's.
struct WebApplicationRow {
    const char* id;
    const char* identifier;
};
constexpr std::array webApplications{
    WebApplicationRow{"cifhbcnohmdccbgoicgdjpfamggdegmo", teams}, // https://teams.microsoft.com/?clientType=pwa
};

// How the application id of a web application begins on Wayland, and whose window it is then.
struct PrefixRow {
    const char* prefix;
    const char* identifier;
    Browser browser;
};
constexpr std::array webApplicationPrefixes{
    PrefixRow{"msedge-_", edge, Browser::edge},
    PrefixRow{"chrome-", chrome, Browser::chrome},
    PrefixRow{"brave-", brave, Browser::brave},
};

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

std::optional<KnownApplication> byName(const QString& name) {
    const QByteArray lowered = name.trimmed().toLower().toUtf8();
    const auto* const row = std::ranges::find_if(
        applications, [&lowered](const ApplicationRow& candidate) { return lowered == candidate.desktopName; });
    if (row == applications.end())
        return std::nullopt;
    return KnownApplication{.identifier = text(row->identifier), .browser = row->browser};
}

std::optional<KnownApplication> byWebApplication(QStringView id) {
    const auto* const row = std::ranges::find_if(webApplications, [id](const WebApplicationRow& candidate) {
        return id.startsWith(QLatin1String(candidate.id), Qt::CaseInsensitive);
    });
    if (row == webApplications.end())
        return std::nullopt;
    return KnownApplication{.identifier = text(row->identifier), .browser = std::nullopt};
}

// X11: the instance is `crx_` and the id, Edge's with one more underscore; of a window started with an address it is
// host and path with two underscores between them.
std::optional<KnownApplication> onX11(const FrontWindow& window) {
    const QString prefix = QStringLiteral("crx_");
    const bool isInstalled = window.instance.startsWith(prefix, Qt::CaseInsensitive);
    if (isInstalled) {
        QStringView id = QStringView(window.instance).sliced(prefix.size());
        if (id.startsWith(u'_'))
            id = id.sliced(1);
        if (auto service = byWebApplication(id))
            return service;
    }
    auto known = byName(window.applicationId);
    if (known && known->browser && (isInstalled || window.instance.contains(QLatin1String("__"))))
        known->browserWindow = BrowserWindow::webApplication;
    return known;
}

// Wayland: `chrome-`, the id or host and path as above, and the profile.
std::optional<KnownApplication> onWayland(const QString& applicationId) {
    for (const PrefixRow& row : webApplicationPrefixes) {
        if (!applicationId.startsWith(QLatin1String(row.prefix), Qt::CaseInsensitive))
            continue;
        if (auto service = byWebApplication(QStringView(applicationId).sliced(text(row.prefix).size())))
            return service;
        return KnownApplication{
            .identifier = text(row.identifier), .browser = row.browser, .browserWindow = BrowserWindow::webApplication};
    }
    return std::nullopt;
}

} // namespace

std::optional<KnownApplication> knownApplication(const FrontWindow& window) {
    if (auto known = onX11(window))
        return known;
    return onWayland(window.applicationId);
}

std::vector<QString> productNames(Browser browser) {
    switch (browser) {
    case Browser::chromium:
        return {QStringLiteral("Chromium"), QString::fromUtf8("क्रोमियम")};
    case Browser::chrome:
    case Browser::chromeUnstable:
        // A web application's window on Wayland does not tell Chrome from Chromium.
        return {QStringLiteral("Google Chrome"), QStringLiteral("Chromium"), QString::fromUtf8("क्रोमियम")};
    case Browser::edge:
        return {QStringLiteral("Microsoft Edge"), QString::fromUtf8("Microsoft\u200B Edge")};
    case Browser::brave:
        return {QStringLiteral("Brave")};
    }
    return {};
}

} // namespace corvane
