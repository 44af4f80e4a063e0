// Looking for newer releases. A check only tells; nothing is downloaded.
#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Services/UpdateChecker.h"

namespace corvane {

namespace {

constexpr qint64 secondsBetweenChecks = 86'400;

} // namespace

QFuture<bool> AppModel::checkForUpdates() {
    const QString address = m_updates.settings().manifestURL().trimmed();
    if (address.isEmpty() || !m_updates.settings().hasOwnManifestURL()) {
        m_updates.fail(UserText::tr("Configure an update manifest URL first."));
        return QtFuture::makeReadyFuture(false);
    }
    const QUrl url(address, QUrl::StrictMode);
    if (!url.isValid() || (url.scheme() != QLatin1String("http") && url.scheme() != QLatin1String("https"))) {
        m_updates.fail(UserText::tr("The update manifest URL must be an HTTP or HTTPS URL."));
        return QtFuture::makeReadyFuture(false);
    }
    const UpdateCheckState previous = m_updates.updateCheckState();
    m_updates.setState(UpdateCheckState::checking());
    m_updates.setErrorMessage(std::nullopt);
    const UpdateChecker checker{url, m_updates.currentAppVersion(), m_services.systemVersion};
    return checker.check(*m_services.http, *this)
        .then(this, [this, previous](const Outcome<UpdateAvailability>& outcome) {
            return finishUpdateCheck(outcome, previous);
        });
}

bool AppModel::finishUpdateCheck(const Outcome<UpdateAvailability>& outcome, const UpdateCheckState& previous) {
    // A failed check counts for the schedule too: nothing is tried again before the next day.
    m_updates.setLastCheckAt(m_services.clock->now());
    try {
        applyUpdateAvailability(outcome.value(), KeepManifest::yes);
        return true;
    } catch (const Error& error) {
        m_updates.setErrorMessage(error.text());
        // An offline moment does not hide a known update.
        const bool wasAvailable = previous.kind == UpdateCheckState::Kind::available;
        m_updates.setState(wasAvailable ? previous : UpdateCheckState::failed(error.text()));
        return false;
    }
}

void AppModel::checkForUpdatesIfNeeded() {
    if (m_services.surface != Surface::window || !m_updates.automaticUpdateChecksEnabled())
        return;
    const auto& last = m_updates.lastUpdateCheckAt();
    if (!last || last->msecsTo(m_services.clock->now()) >= secondsBetweenChecks * 1000)
        static_cast<void>(checkForUpdates());
}

void AppModel::updateAutomaticUpdateChecksEnabled(bool enabled) {
    m_updates.setAutomaticChecksEnabled(enabled);
    if (enabled)
        checkForUpdatesIfNeeded();
}

void AppModel::restoreCachedUpdateState() {
    if (const auto manifest = m_updates.settings().cachedManifest())
        applyUpdateAvailability(
            UpdateChecker::availability(*manifest, m_updates.currentAppVersion(), m_services.systemVersion),
            KeepManifest::no);
}

void AppModel::applyUpdateAvailability(const UpdateAvailability& availability, KeepManifest persist) {
    m_updates.setState(UpdateCheckState::of(availability));
    if (!availability.manifest)
        m_updates.forgetManifest();
    else if (persist == KeepManifest::yes)
        persistUpdateManifest(*availability.manifest);
}

void AppModel::persistUpdateManifest(const UpdateManifest& manifest) {
    m_updates.persistManifest(manifest);
}

} // namespace corvane
