#include "CorvaneApp/Views/KeyboardShortcuts.h"

#include "CorvaneApp/Model/AppModel.h"
#include "CorvaneApp/Views/MeetingDetailModel.h"
#include "CorvaneApp/Views/PanelText.h"
#include "CorvaneApp/Views/SidebarModel.h"
#include "CorvaneApp/Views/SpeakerProfilesPageModel.h"

namespace corvane {

namespace {

KeyboardShortcut shortcut(ShortcutCommand command, std::initializer_list<const char*> keys, const QString& text) {
    KeyboardShortcut made;
    for (const char* key : keys)
        made.keys.append(QString::fromLatin1(key));
    made.text = text;
    made.command = command;
    return made;
}

ShortcutSection section(const QString& title, std::vector<KeyboardShortcut> shortcuts) {
    ShortcutSection made;
    made.title = title;
    made.shortcuts = std::move(shortcuts);
    return made;
}

} // namespace

QVariantList ShortcutSection::shortcutList() const {
    return variantList(shortcuts);
}

std::vector<ShortcutSection> keyboardShortcuts() {
    using enum ShortcutCommand;
    return {
        section(PanelText::tr("Recording"),
                {shortcut(newRecording, {"Ctrl+R"}, PanelText::tr("New recording")),
                 shortcut(pauseOrResumeRecording, {"Ctrl+P"}, PanelText::tr("Pause or resume")),
                 shortcut(stopRecording, {"Ctrl+Shift+R"}, PanelText::tr("Stop and process"))}),
        section(PanelText::tr("Meeting"),
                {shortcut(importAudio, {"Ctrl+O"}, PanelText::tr("Import audio")),
                 shortcut(process, {"Ctrl+Return"}, PanelText::tr("Process")),
                 shortcut(playOrStop, {"Ctrl+Shift+P", "Media Play"}, PanelText::tr("Play or stop the audio")),
                 shortcut(copyTranscript, {"Ctrl+Shift+C"}, PanelText::tr("Copy the transcript")),
                 shortcut(openFiles, {"Ctrl+Shift+O"}, PanelText::tr("Open the files")),
                 shortcut(rename, {"F2"}, PanelText::tr("Rename"))}),
        section(PanelText::tr("Window"),
                {shortcut(showMeetings, {"Ctrl+1"}, PanelText::tr("Meetings")),
                 shortcut(showSpeakerProfiles, {"Ctrl+2"}, PanelText::tr("Speaker profiles")),
                 shortcut(showSettings, {"Ctrl+3", "Ctrl+,"}, PanelText::tr("Settings")),
                 shortcut(nextPane, {"F6"}, PanelText::tr("Between the sidebar and the page")),
                 shortcut(refresh, {"F5"}, PanelText::tr("Refresh")),
                 shortcut(showShortcuts, {"F1", "Ctrl+?"}, PanelText::tr("Keyboard shortcuts")),
                 shortcut(none, {"Ctrl+W"}, PanelText::tr("Close the window")),
                 shortcut(none, {"Ctrl+Q"}, PanelText::tr("Quit"))}),
        section(PanelText::tr("In the list of meetings"),
                {shortcut(none, {"Up", "Down"}, PanelText::tr("From meeting to meeting")),
                 shortcut(none, {"Return"}, PanelText::tr("Show")),
                 shortcut(none, {"Menu", "Shift+F10"}, PanelText::tr("Menu of the meeting")),
                 shortcut(none, {"Del"}, PanelText::tr("Delete"))}),
        section(PanelText::tr("In the transcript"), {shortcut(none, {"Up", "Down"}, PanelText::tr("From turn to turn")),
                                                     shortcut(none, {"Return"}, PanelText::tr("Play from there")),
                                                     shortcut(none, {"Ctrl+C"}, PanelText::tr("Copy the turn"))}),
        section(PanelText::tr("In the speaker profiles"),
                {shortcut(none, {"Up", "Down"}, PanelText::tr("From profile to profile"))}),
    };
}

KeyboardShortcutsModel::KeyboardShortcutsModel(AppModel& model, SidebarModel& sidebar, MeetingDetailModel& detail,
                                               SpeakerProfilesPageModel& speakerProfiles, QObject* parent)
    : QObject(parent), m_model(model), m_sidebar(sidebar), m_detail(detail), m_speakerProfiles(speakerProfiles) {
    connect(&m_model.library(), &LibraryPart::selectedSidebarItemChanged, this,
            &KeyboardShortcutsModel::rememberMeeting);
    rememberMeeting();
}

QVariantList KeyboardShortcutsModel::sections() {
    return variantList(keyboardShortcuts());
}

QVariantList KeyboardShortcutsModel::commands() {
    QVariantList commands;
    for (const ShortcutSection& part : keyboardShortcuts()) {
        for (const KeyboardShortcut& one : part.shortcuts) {
            if (one.command != ShortcutCommand::none)
                commands.append(QVariant::fromValue(one));
        }
    }
    return commands;
}

void KeyboardShortcutsModel::rememberMeeting() {
    const auto& item = m_model.library().selectedSidebarItem();
    if (item && item->kind == SidebarItem::Kind::meeting)
        m_lastMeetingID = item->meetingID;
}

bool KeyboardShortcutsModel::isMeetingShown() const {
    const auto& item = m_model.library().selectedSidebarItem();
    return !item || item->kind == SidebarItem::Kind::meeting;
}

void KeyboardShortcutsModel::run(int number) {
    const auto command = static_cast<ShortcutCommand>(number);
    switch (command) {
    case ShortcutCommand::newRecording:
        m_detail.pressIfEnabled(MeetingAction::startRecording);
        break;
    case ShortcutCommand::stopRecording:
        m_detail.pressIfEnabled(MeetingAction::stopRecording);
        break;
    case ShortcutCommand::pauseOrResumeRecording:
        if (!m_detail.pressIfEnabled(MeetingAction::pauseRecording))
            m_detail.pressIfEnabled(MeetingAction::resumeRecording);
        break;
    case ShortcutCommand::importAudio:
        m_detail.pressIfEnabled(MeetingAction::importAudioFile);
        break;
    case ShortcutCommand::refresh:
        refresh();
        break;
    case ShortcutCommand::nextPane:
        Q_EMIT nextPaneRequested();
        break;
    case ShortcutCommand::showShortcuts:
        Q_EMIT sheetRequested();
        break;
    default:
        runOnMeeting(command);
        goTo(command);
    }
}

// Of a meeting that is out of sight nothing is done.
void KeyboardShortcutsModel::runOnMeeting(ShortcutCommand command) {
    if (!isMeetingShown())
        return;
    if (command == ShortcutCommand::process)
        m_detail.pressIfEnabled(MeetingAction::processCurrentAudio);
    else if (command == ShortcutCommand::playOrStop)
        m_detail.pressIfEnabled(MeetingAction::toggleAudioPlayback);
    else if (command == ShortcutCommand::openFiles)
        m_detail.pressIfEnabled(MeetingAction::openLastRun);
    else if (command == ShortcutCommand::copyTranscript)
        m_detail.transcript()->copyTranscript();
    else if (command == ShortcutCommand::rename)
        Q_EMIT renameRequested();
}

void KeyboardShortcutsModel::goTo(ShortcutCommand command) {
    if (command == ShortcutCommand::showMeetings)
        showMeetings();
    else if (command == ShortcutCommand::showSpeakerProfiles)
        m_model.selectSidebarItem(SidebarItem::speakerProfiles());
    else if (command == ShortcutCommand::showSettings)
        m_model.selectSidebarItem(SidebarItem::settings());
}

void KeyboardShortcutsModel::showMeetings() {
    const auto& meetings = m_model.library().meetings();
    if (meetings.empty())
        m_sidebar.selectNoMeeting();
    else if (!isMeetingShown())
        m_sidebar.selectMeeting(m_model.library().find(m_lastMeetingID) ? m_lastMeetingID : meetings.front().id);
    Q_EMIT meetingListRequested();
}

void KeyboardShortcutsModel::refresh() {
    const auto& item = m_model.library().selectedSidebarItem();
    if (item && item->kind == SidebarItem::Kind::speakerProfiles)
        m_speakerProfiles.refresh();
    else
        m_sidebar.reload();
}

} // namespace corvane
