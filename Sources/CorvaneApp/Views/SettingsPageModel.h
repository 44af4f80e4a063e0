// The settings page over the model. Each control takes effect at once. What is typed as a token is never read back and
// is gone when the page is left. Owned by the main window's model, on the main thread; the token store is asked beside
// it.
#pragma once

#include "CorvaneApp/Views/PanelButton.h"
#include "CorvaneApp/Views/SettingsPanels.h"

#include <QObject>

namespace corvane {

class AppModel;

// The values of a meeting for which a column of the database can be chosen.
enum class NotionMapping { meetingID, participants, summary };

class SettingsPageModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString token READ token WRITE setToken NOTIFY huggingFaceChanged)
    Q_PROPERTY(bool canSaveToken READ canSaveToken NOTIFY huggingFaceChanged)
    Q_PROPERTY(bool hasStoredToken READ hasStoredToken NOTIFY huggingFaceChanged)
    Q_PROPERTY(corvane::StatusLine tokenLine READ tokenLine NOTIFY huggingFaceChanged)
    Q_PROPERTY(QString errorMessage READ errorMessage NOTIFY huggingFaceChanged)
    Q_PROPERTY(bool isDiarizationEnabled READ isDiarizationEnabled WRITE setDiarizationEnabled NOTIFY
                   diarizationDefaultsChanged)
    Q_PROPERTY(QVariantList speakerCountModes READ speakerCountModes CONSTANT)
    Q_PROPERTY(
        QString speakerCountMode READ speakerCountMode WRITE setSpeakerCountMode NOTIFY diarizationDefaultsChanged)
    Q_PROPERTY(QVariantList speakerCountSteppers READ speakerCountSteppers NOTIFY diarizationDefaultsChanged)
    Q_PROPERTY(corvane::OllamaPanel ollama READ ollama NOTIFY ollamaChanged)
    Q_PROPERTY(bool usesOllama READ usesOllama WRITE setUsesOllama NOTIFY ollamaChanged)
    Q_PROPERTY(QString notionToken READ notionToken WRITE setNotionToken NOTIFY notionChanged)
    Q_PROPERTY(bool canSaveNotionToken READ canSaveNotionToken NOTIFY notionChanged)
    Q_PROPERTY(bool hasNotionToken READ hasNotionToken NOTIFY notionChanged)
    Q_PROPERTY(corvane::StatusLine notionTokenLine READ notionTokenStatus NOTIFY notionChanged)
    Q_PROPERTY(QString notionDatabaseURL READ notionDatabaseURL WRITE setNotionDatabaseURL NOTIFY notionChanged)
    Q_PROPERTY(bool canSyncNotion READ canSyncNotion NOTIFY notionChanged)
    Q_PROPERTY(bool isFetchingNotion READ isFetchingNotion NOTIFY notionChanged)
    Q_PROPERTY(QString notionDatabaseTitle READ notionDatabaseTitle NOTIFY notionChanged)
    Q_PROPERTY(bool hasNotionProperties READ hasNotionProperties NOTIFY notionChanged)
    Q_PROPERTY(QVariantList notionProperties READ notionProperties NOTIFY notionPropertiesChanged)
    Q_PROPERTY(QStringList notionMappings READ notionMappings CONSTANT)
    Q_PROPERTY(QStringList mappedNotionProperties READ mappedNotionProperties NOTIFY notionChanged)
    Q_PROPERTY(corvane::StatusLine notionOutcome READ notionOutcome NOTIFY notionChanged)
    Q_PROPERTY(corvane::UpdatePanel updates READ updates NOTIFY updatesChanged)
    Q_PROPERTY(bool checksAutomatically READ checksAutomatically WRITE setChecksAutomatically NOTIFY updatesChanged)

public:
    // Borrows the model, which outlives it.
    explicit SettingsPageModel(AppModel& model, QObject* parent = nullptr);

    // The page has come on screen, or has left it.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void leave();

    // Hugging Face. While the token store is busy with a change no other is begun.
    [[nodiscard]] const QString& token() const { return m_token; }
    void setToken(const QString& token);
    [[nodiscard]] bool canSaveToken() const { return !m_token.trimmed().isEmpty(); }
    [[nodiscard]] bool hasStoredToken() const { return m_hasStoredToken; }
    [[nodiscard]] StatusLine tokenLine() const { return huggingFaceTokenLine(m_hasStoredToken); }
    [[nodiscard]] const QString& errorMessage() const { return m_errorMessage; }
    void load();
    Q_INVOKABLE void save();
    Q_INVOKABLE void remove();

    // Defaults of speaker detection. `field` is a PanelStepper::Field.
    [[nodiscard]] bool isDiarizationEnabled() const;
    void setDiarizationEnabled(bool enabled);
    [[nodiscard]] static QVariantList speakerCountModes() { return variantList(defaultSpeakerCountModeChoices()); }
    [[nodiscard]] QString speakerCountMode() const;
    void setSpeakerCountMode(const QString& mode);
    [[nodiscard]] QVariantList speakerCountSteppers() const;
    Q_INVOKABLE void step(int field, qint64 value);

    // Ollama
    [[nodiscard]] OllamaPanel ollama() const;
    [[nodiscard]] bool usesOllama() const;
    void setUsesOllama(bool uses);
    Q_INVOKABLE void refreshOllama();
    Q_INVOKABLE void openOllamaDownload();

    // Notion. `mapping` is a NotionMapping.
    [[nodiscard]] const QString& notionToken() const { return m_notionToken; }
    void setNotionToken(const QString& token);
    [[nodiscard]] bool canSaveNotionToken() const { return !m_notionToken.trimmed().isEmpty(); }
    [[nodiscard]] bool hasNotionToken() const;
    [[nodiscard]] StatusLine notionTokenStatus() const { return notionTokenLine(hasNotionToken()); }
    [[nodiscard]] QString notionDatabaseURL() const;
    void setNotionDatabaseURL(const QString& url);
    [[nodiscard]] bool canSyncNotion() const { return canSyncNotionDatabase(notionState()); }
    [[nodiscard]] bool isFetchingNotion() const;
    [[nodiscard]] QString notionDatabaseTitle() const { return shownNotionDatabaseTitle(notionState()); }
    [[nodiscard]] bool hasNotionProperties() const;
    [[nodiscard]] QVariantList notionProperties() const;
    // What can be mapped, as NotionMapping has it, and the column of each; empty: none.
    [[nodiscard]] static QStringList notionMappings();
    [[nodiscard]] QStringList mappedNotionProperties() const;
    // What came of the last operation while the page was on screen, in the words of the status line.
    [[nodiscard]] const StatusLine& notionOutcome() const { return m_notionOutcome; }
    Q_INVOKABLE void saveNotion();
    Q_INVOKABLE void removeNotionToken();
    Q_INVOKABLE void syncNotionDatabase();
    Q_INVOKABLE void mapNotionProperty(int mapping, const QString& property);

    // Updates
    [[nodiscard]] UpdatePanel updates() const;
    [[nodiscard]] bool checksAutomatically() const;
    void setChecksAutomatically(bool checks);
    Q_INVOKABLE void checkForUpdates();
    Q_INVOKABLE void downloadUpdate();
    Q_INVOKABLE void openReleaseNotes();

    Q_INVOKABLE void runSetupWizard();

Q_SIGNALS:
    void huggingFaceChanged();
    void diarizationDefaultsChanged();
    void ollamaChanged();
    void notionChanged();
    void notionPropertiesChanged();
    void updatesChanged();

private:
    void follow();
    void setStoredToken(bool isStored, const QString& errorMessage);
    void changeToken(QFuture<bool> change, bool isStoredThen, const QString& failure);
    [[nodiscard]] NotionPanelState notionState() const;
    void tellNotionOutcome(QFuture<bool> outcome);

    AppModel& m_model;
    QString m_token;
    QString m_notionToken;
    bool m_hasStoredToken = false;
    QString m_errorMessage;
    bool m_isChangingToken = false;
    quint64 m_tokenQuestion = 0; // the last one; the answer to an earlier one is out of date
    bool m_isShown = false;
    StatusLine m_notionOutcome;
};

} // namespace corvane
