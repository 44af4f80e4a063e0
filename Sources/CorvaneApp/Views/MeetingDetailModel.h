// The meeting detail over the model: its panels as values, and what their controls set off. It follows the model by
// itself; many changes of one turn of the main loop are taken at once. Owned by the main window's model, on the main
// thread.
#pragma once

#include "CorvaneApp/Views/MeetingPanels.h"
#include "CorvaneApp/Views/ProcessingSettingsPanel.h"
#include "CorvaneApp/Views/SpeakerReviewModel.h"
#include "CorvaneApp/Views/TranscriptPanelModel.h"

#include <QTimer>
#include <QUrl>

namespace corvane {

class AppModel;

class MeetingDetailModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(bool hasNotionPage READ hasNotionPage NOTIFY panelsChanged)
    Q_PROPERTY(bool isRecordingSessionVisible READ isRecordingSessionVisible NOTIFY isRecordingSessionVisibleChanged)
    Q_PROPERTY(corvane::MeetingStatusPanel statusPanel READ statusPanel NOTIFY panelsChanged)
    Q_PROPERTY(corvane::InProgressPanel inProgressPanel READ inProgressPanel NOTIFY panelsChanged)
    Q_PROPERTY(QVariantList jobRows READ jobRows NOTIFY panelsChanged)
    Q_PROPERTY(QVariantList floatingControls READ floatingControls NOTIFY panelsChanged)
    Q_PROPERTY(bool hasTranscript READ hasTranscript NOTIFY panelsChanged)
    Q_PROPERTY(QString settingsSummary READ settingsSummary NOTIFY settingsChanged)
    Q_PROPERTY(QVariantList languages READ languages CONSTANT)
    Q_PROPERTY(QString language READ language WRITE setLanguage NOTIFY settingsChanged)
    Q_PROPERTY(bool detectsSpeakers READ detectsSpeakers WRITE setDetectsSpeakers NOTIFY settingsChanged)
    Q_PROPERTY(QVariantList speakerCountModes READ speakerCountModes CONSTANT)
    Q_PROPERTY(QString speakerCountMode READ speakerCountMode WRITE setSpeakerCountMode NOTIFY settingsChanged)
    Q_PROPERTY(QVariantList speakerCountSteppers READ speakerCountSteppers NOTIFY settingsChanged)
    Q_PROPERTY(corvane::SpeakerReviewModel* speakers READ speakers CONSTANT)
    Q_PROPERTY(corvane::TranscriptPanelModel* transcript READ transcript CONSTANT)
    Q_PROPERTY(bool isToastShown READ isToastShown NOTIFY toastChanged)
    Q_PROPERTY(QString toastMessage READ toastMessage NOTIFY toastChanged)
    Q_PROPERTY(bool isToastError READ isToastError NOTIFY toastChanged)
    Q_PROPERTY(bool isAskingNotionReplacement READ isAskingNotionReplacement NOTIFY isAskingNotionReplacementChanged)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged)
    Q_PROPERTY(QString longWorkText READ longWorkText NOTIFY longWorkChanged)
    Q_PROPERTY(double longWorkProgress READ longWorkProgress NOTIFY longWorkChanged)

public:
    // Borrows the model, which outlives it.
    MeetingDetailModel(AppModel& model, TranscriptPanelModel::PutOnClipboard putOnClipboard, QObject* parent = nullptr);

    [[nodiscard]] QString title() const;
    [[nodiscard]] bool hasNotionPage() const { return !m_state.notionPageURL.isEmpty(); }
    [[nodiscard]] bool isRecordingSessionVisible() const { return m_isSessionVisible; }
    [[nodiscard]] const MeetingStatusPanel& statusPanel() const { return m_status; }
    [[nodiscard]] const InProgressPanel& inProgressPanel() const { return m_inProgress; }
    [[nodiscard]] QVariantList jobRows() const { return variantList(m_jobRows); }
    [[nodiscard]] QVariantList floatingControls() const { return variantList(m_controls); }
    [[nodiscard]] bool hasTranscript() const { return m_state.hasTranscript; }
    [[nodiscard]] SpeakerReviewModel* speakers() { return &m_speakers; }
    [[nodiscard]] TranscriptPanelModel* transcript() { return &m_transcript; }
    [[nodiscard]] bool isToastShown() const;
    [[nodiscard]] QString toastMessage() const;
    [[nodiscard]] bool isToastError() const;
    [[nodiscard]] bool isAskingNotionReplacement() const;
    [[nodiscard]] QString statusMessage() const;
    // What takes long and shows how far it has come, from 0 to 1; an empty text where nothing does.
    [[nodiscard]] QString longWorkText() const;
    [[nodiscard]] double longWorkProgress() const;

    [[nodiscard]] QString settingsSummary() const;
    [[nodiscard]] static QVariantList languages() { return variantList(languageChoices()); }
    [[nodiscard]] QString language() const;
    void setLanguage(const QString& language);
    [[nodiscard]] bool detectsSpeakers() const;
    void setDetectsSpeakers(bool detects);
    [[nodiscard]] static QVariantList speakerCountModes() { return variantList(speakerCountModeChoices()); }
    [[nodiscard]] QString speakerCountMode() const;
    void setSpeakerCountMode(const QString& mode);
    [[nodiscard]] QVariantList speakerCountSteppers() const;
    Q_INVOKABLE void step(int field, qint64 value);

    // `action` is that of one of the panels' buttons.
    Q_INVOKABLE void press(int action);
    // False, and nothing happens, where no panel has an enabled button for it now.
    bool pressIfEnabled(MeetingAction action);
    // While the title has the keyboard a refresh leaves it alone. What was typed becomes the title when the field is
    // left, when a button is pressed, and before another meeting or page is shown. A field that was only passed through
    // renames nothing: that would put an old meeting on top of the list and take the chunks out of a recording's draft.
    Q_INVOKABLE void beginTitleEditing();
    Q_INVOKABLE void typeTitle(const QString& text);
    Q_INVOKABLE void endTitleEditing();
    Q_INVOKABLE void submitTitle(const QString& text);
    // Does nothing for what is no file of this machine.
    Q_INVOKABLE void importChosen(const QUrl& file);
    Q_INVOKABLE void openNotionPage();
    Q_INVOKABLE void playFrom(double seconds);
    Q_INVOKABLE void replaceNotionPage();
    Q_INVOKABLE void createNewNotionPage();
    Q_INVOKABLE void dismissNotionReplacement();

Q_SIGNALS:
    void titleChanged();
    // Another meeting or page is selected.
    void shownMeetingChanged();
    void panelsChanged();
    void isRecordingSessionVisibleChanged();
    void settingsChanged();
    void toastChanged();
    void isAskingNotionReplacementChanged();
    void statusMessageChanged();
    void longWorkChanged();
    // The user wants a file to import, and has to be asked which.
    void importRequested();

private:
    void follow();
    void refreshSoon() { m_refresh.start(); }
    void refresh();
    void refreshTranscript();
    void followPlayback();
    [[nodiscard]] MeetingPanelsState panelsState() const;
    void changeSettings(const ProcessingSettings& settings);
    void takeTypedTitle();

    AppModel& m_model;
    SpeakerReviewModel m_speakers;
    TranscriptPanelModel m_transcript;
    QTimer m_refresh;
    QTimer m_playbackClock;
    std::optional<QString> m_typedTitle; // that is not the meeting's title yet
    MeetingPanelsState m_state;
    bool m_isSessionVisible = false;
    MeetingStatusPanel m_status;
    InProgressPanel m_inProgress;
    std::vector<JobDetailRow> m_jobRows;
    std::vector<PanelButton> m_controls;
};

} // namespace corvane
