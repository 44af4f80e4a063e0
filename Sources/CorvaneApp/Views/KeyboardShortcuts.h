// What the keyboard can do, in one table: the window takes its shortcuts from it, and the page that lists them too.
// Plain values; the model beside it carries out what needs no view.
#pragma once

#include <QObject>
#include <QStringList>
#include <QVariant>

#include <vector>

namespace corvane {

class AppModel;
class MeetingDetailModel;
class SidebarModel;
class SpeakerProfilesPageModel;

enum class ShortcutCommand {
    none, // carried out by what has the keyboard, or by the window as a whole
    newRecording,
    stopRecording,
    pauseOrResumeRecording,
    importAudio,
    process,
    playOrStop,
    copyTranscript,
    openFiles,
    rename,
    showMeetings,
    showSpeakerProfiles,
    showSettings,
    refresh,
    nextPane,
    showShortcuts,
};

struct KeyboardShortcut {
    Q_GADGET
    Q_PROPERTY(QStringList keys MEMBER keys)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(int command READ commandNumber)

public:
    QStringList keys; // each does it; in the portable form, as "Ctrl+R"
    QString text;     // what it does
    ShortcutCommand command = ShortcutCommand::none;

    [[nodiscard]] int commandNumber() const { return static_cast<int>(command); }
    friend bool operator==(const KeyboardShortcut&, const KeyboardShortcut&) = default;
};

struct ShortcutSection {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QVariantList shortcuts READ shortcutList)

public:
    QString title;
    std::vector<KeyboardShortcut> shortcuts;

    [[nodiscard]] QVariantList shortcutList() const;
    friend bool operator==(const ShortcutSection&, const ShortcutSection&) = default;
};

[[nodiscard]] std::vector<ShortcutSection> keyboardShortcuts();

class KeyboardShortcutsModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantList sections READ sections CONSTANT)
    Q_PROPERTY(QVariantList commands READ commands CONSTANT)

public:
    // Borrows all, which outlive it.
    KeyboardShortcutsModel(AppModel& model, SidebarModel& sidebar, MeetingDetailModel& detail,
                           SpeakerProfilesPageModel& speakerProfiles, QObject* parent = nullptr);

    [[nodiscard]] static QVariantList sections();
    // The shortcuts that the window itself has to watch for.
    [[nodiscard]] static QVariantList commands();

    // The number of a ShortcutCommand. One whose button is not there or disabled does nothing.
    Q_INVOKABLE void run(int number);

Q_SIGNALS:
    // What only the view can do.
    void renameRequested();
    void meetingListRequested();
    void nextPaneRequested();
    void sheetRequested();

private:
    [[nodiscard]] bool isMeetingShown() const;
    void runOnMeeting(ShortcutCommand command);
    void goTo(ShortcutCommand command);
    void showMeetings();
    void refresh();
    void rememberMeeting();

    AppModel& m_model;
    SidebarModel& m_sidebar;
    MeetingDetailModel& m_detail;
    SpeakerProfilesPageModel& m_speakerProfiles;
    QString m_lastMeetingID; // that was shown
};

} // namespace corvane
