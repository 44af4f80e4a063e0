#include "CorvaneCore/Calls/ActiveCallDetector.h"

#include "CorvaneContract/Text/UserText.h"

#include <QLocale>
#include <QUrl>

#include <algorithm>
#include <initializer_list>

namespace corvane {

namespace {

enum class Subdomains { no, yes };

struct WebHost {
    CallProvider provider{};
    QLatin1String host;
    Subdomains subdomains = Subdomains::no; // whether these are the service too
};

constexpr WebHost webHosts[] = {
    {CallProvider::googleMeet, QLatin1String("meet.google.com"), Subdomains::no},
    {CallProvider::zoom, QLatin1String("zoom.us"), Subdomains::yes},
    {CallProvider::teams, QLatin1String("teams.microsoft.com"), Subdomains::yes},
};

bool isOf(const WebHost& service, const QString& host) {
    return host == service.host ||
           (service.subdomains == Subdomains::yes && host.endsWith(QLatin1Char('.') + service.host));
}

// As the user's language has its letters: in Turkish a capital I is no capital of i.
bool containsInAnyCase(const QString& text, const QString& word) {
    const QLocale locale;
    return locale.toLower(text).contains(locale.toLower(word));
}

bool saysOneOf(const std::optional<QString>& title, std::initializer_list<QStringView> words) {
    // A title may have its accents as letters of their own.
    const QString text = title.value_or(QString()).normalized(QString::NormalizationForm_C).toLower();
    return std::any_of(words.begin(), words.end(), [&](QStringView word) { return text.contains(word); });
}

// The French words are there because an English interface is not the only one.
bool looksLikeNativeCall(const std::optional<QString>& title) {
    return saysOneOf(title, {u"meeting", u"call", u"webinar", u"réunion", u"appel"});
}

bool looksLikeSlackHuddle(const std::optional<QString>& title) {
    return saysOneOf(title, {u"huddle", u"appel"});
}

std::optional<QString> without(QString title, std::initializer_list<QLatin1String> names) {
    for (const QLatin1String name : names)
        title.remove(name);
    title = title.trimmed();
    return title.isEmpty() ? std::nullopt : std::optional(title);
}

std::optional<QString> cleanedBrowserTitle(const QString& title) {
    return without(title,
                   {QLatin1String(" - Google Meet"), QLatin1String(" | Microsoft Teams"), QLatin1String(" - Zoom")});
}

std::optional<QString> cleanedNativeTitle(const std::optional<QString>& title) {
    return without(title.value_or(QString()), {QLatin1String("Zoom Meeting"), QLatin1String("Microsoft Teams")});
}

struct NativeKey {
    QLatin1String prefix;
    QLatin1String untitled;
};

DetectedCall nativeCall(CallProvider provider, NativeKey key, const FrontmostApplication& application,
                        const QString& source) {
    const auto title = cleanedNativeTitle(application.windowTitle);
    return {.provider = provider,
            .title = title,
            .source = source,
            .key = key.prefix + title.value_or(QString(key.untitled))};
}

std::optional<DetectedCall> detectBrowserCall(const BrowserTab& tab, const QString& source) {
    const QString host = QUrl(tab.url).host().toLower(); // empty of what is no address
    const auto* service =
        std::find_if(std::begin(webHosts), std::end(webHosts), [&](const WebHost& one) { return isOf(one, host); });
    if (service == std::end(webHosts))
        return std::nullopt;
    return DetectedCall{.provider = service->provider,
                        .title = cleanedBrowserTitle(tab.title),
                        .source = source,
                        .key = QStringLiteral("url:") + tab.url};
}

bool isZoom(const QString& bundleID, const QString& appName) {
    return bundleID == QLatin1String("us.zoom.xos") || containsInAnyCase(appName, QStringLiteral("zoom"));
}

bool isTeams(const QString& bundleID, const QString& appName) {
    return bundleID == QLatin1String("com.microsoft.teams") || bundleID == QLatin1String("com.microsoft.teams2") ||
           containsInAnyCase(appName, QStringLiteral("teams"));
}

} // namespace

QFuture<std::optional<DetectedCall>> ActiveCallDetector::detectCurrentCall() {
    return m_reader->read().then(
        [](const std::optional<FrontmostApplication>& front) { return front ? detectCall(*front) : std::nullopt; });
}

std::optional<DetectedCall> ActiveCallDetector::detectCall(const FrontmostApplication& application) {
    const QString& bundleID = application.bundleIdentifier;
    const QString appName = application.localizedName.value_or(UserText::tr("current app"));
    if (isZoom(bundleID, appName))
        return nativeCall(CallProvider::zoom, {QLatin1String("app:zoom:"), QLatin1String("meeting")}, application,
                          appName);
    if (isTeams(bundleID, appName)) {
        if (!looksLikeNativeCall(application.windowTitle))
            return std::nullopt;
        return nativeCall(CallProvider::teams, {QLatin1String("app:teams:"), QLatin1String("meeting")}, application,
                          appName);
    }
    if (bundleID == QLatin1String("com.tinyspeck.slackmacgap") && looksLikeSlackHuddle(application.windowTitle))
        return nativeCall(CallProvider::slack, {QLatin1String("app:slack:"), QLatin1String("huddle")}, application,
                          appName);
    return application.activeTab ? detectBrowserCall(*application.activeTab, appName) : std::nullopt;
}

} // namespace corvane
