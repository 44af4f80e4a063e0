#include "CorvaneApp/Views/SpeakerProfileEditing.h"

#include <utility>

namespace corvane {

SpeakerProfileEditing::SpeakerProfileEditing(const SpeakerProfile& profile, Callbacks callbacks,
                                             std::chrono::milliseconds saveDelay, QObject* parent)
    : QObject(parent),
      m_callbacks(std::move(callbacks)),
      m_displayName(profile.displayName),
      m_notes(profile.notes),
      m_enabled(profile.enabled) {
    m_saveTask.setSingleShot(true);
    m_saveTask.setInterval(saveDelay);
    connect(&m_saveTask, &QTimer::timeout, this, &SpeakerProfileEditing::saveNow);
}

void SpeakerProfileEditing::setDisplayName(const QString& text) {
    if (std::exchange(m_displayName, text) != text)
        scheduleSave();
}

void SpeakerProfileEditing::setNotes(const QString& text) {
    if (std::exchange(m_notes, text) != text)
        scheduleSave();
}

void SpeakerProfileEditing::scheduleSave() {
    m_isTouched = true;
    m_saveTask.start();
}

void SpeakerProfileEditing::toggle(bool enabled) {
    m_isTouched = true;
    m_enabled = enabled;
    if (const auto stored = m_callbacks.stored())
        m_callbacks.onToggle(*stored, enabled);
}

void SpeakerProfileEditing::saveNow() {
    const auto stored = m_callbacks.stored();
    const QString displayName = m_displayName.trimmed();
    const QString notes = m_notes.trimmed();
    if (!stored || displayName.isEmpty())
        return;
    if (displayName == stored->displayName && notes == stored->notes && m_enabled == stored->enabled)
        return;
    m_callbacks.onUpdate(*stored, displayName, notes, m_enabled);
}

void SpeakerProfileEditing::finish() {
    m_saveTask.stop();
    if (m_isTouched)
        saveNow();
}

} // namespace corvane
