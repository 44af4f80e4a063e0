// What the user types into the row of a person: it is saved by itself a moment after the last key, and at once when the
// row goes. Owned by the page of the speaker profiles, one for each row on screen; main thread.
#pragma once

#include "CorvaneCore/VoiceProfiles/SpeakerProfile.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

namespace corvane {

class SpeakerProfileEditing final : public QObject {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds defaultSaveDelay{600};

    struct Callbacks {
        // The person as stored now; nothing once it is deleted.
        std::function<std::optional<SpeakerProfile>()> stored;
        std::function<void(const SpeakerProfile& stored, const QString& displayName, const QString& notes,
                           bool enabled)>
            onUpdate;
        std::function<void(const SpeakerProfile& stored, bool enabled)> onToggle;
    };

    // Begins with what is stored and does not follow later changes of it.
    SpeakerProfileEditing(const SpeakerProfile& profile, Callbacks callbacks, std::chrono::milliseconds saveDelay,
                          QObject* parent = nullptr);

    void setDisplayName(const QString& text);
    void setNotes(const QString& text);
    // Told at once, before a text that still waits to be saved.
    void toggle(bool enabled);
    // Saves the trimmed texts if they differ from what is stored. A name that is empty is no name: then nothing is
    // saved and nothing said.
    void saveNow();
    // Saves what the user changed and is not yet stored. A row that was only looked at saves nothing: it must not undo
    // a name that came from elsewhere in the meantime.
    void finish();

private:
    void scheduleSave();

    Callbacks m_callbacks;
    QString m_displayName;
    QString m_notes;
    bool m_enabled;
    bool m_isTouched = false;
    QTimer m_saveTask;
};

} // namespace corvane
