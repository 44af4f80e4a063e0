// The page of the known people over the model: their rows in the order that the user has chosen, the fields for a new
// one, and the two settings of the matching. Follows the model while it is shown. Owned by the main window's model, on
// the main thread.
#pragma once

#include "CorvaneApp/Views/RowListModel.h"
#include "CorvaneApp/Views/SpeakerProfileEditing.h"
#include "CorvaneApp/Views/SpeakerProfileRows.h"

#include <QUuid>

#include <map>
#include <memory>

namespace corvane {

class AppModel;

class SpeakerProfilesPageModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* profiles READ profiles CONSTANT)
    Q_PROPERTY(QVariantList sortChoices READ sortChoices CONSTANT)
    Q_PROPERTY(QString sortMode READ sortMode WRITE setSortMode NOTIFY sortModeChanged)
    Q_PROPERTY(QString newDisplayName READ newDisplayName WRITE setNewDisplayName NOTIFY newProfileChanged)
    Q_PROPERTY(QString newNotes READ newNotes WRITE setNewNotes NOTIFY newProfileChanged)
    Q_PROPERTY(bool canCreate READ canCreate NOTIFY newProfileChanged)
    Q_PROPERTY(bool isMatchingEnabled READ isMatchingEnabled WRITE setMatchingEnabled NOTIFY matchingChanged)
    Q_PROPERTY(QString matchingText READ matchingText NOTIFY matchingChanged)
    Q_PROPERTY(double threshold READ threshold WRITE setThreshold NOTIFY matchingChanged)
    Q_PROPERTY(QString thresholdText READ thresholdText NOTIFY matchingChanged)
    Q_PROPERTY(bool isAskingDeletion READ isAskingDeletion NOTIFY confirmationChanged)
    Q_PROPERTY(bool showDeleteAllConfirmation READ showDeleteAllConfirmation NOTIFY confirmationChanged)

public:
    // Borrows the model, which outlives it.
    explicit SpeakerProfilesPageModel(AppModel& model,
                                      std::chrono::milliseconds saveDelay = SpeakerProfileEditing::defaultSaveDelay,
                                      QObject* parent = nullptr);
    ~SpeakerProfilesPageModel() override;

    // The page comes on the screen and goes: it begins anew each time, and what was typed is saved when it goes.
    void appear();
    void leave();

    [[nodiscard]] QAbstractItemModel* profiles() { return &m_profiles; }
    [[nodiscard]] static QVariantList sortChoices() { return variantList(speakerProfileSortChoices()); }
    [[nodiscard]] QString sortMode() const { return rawText(m_sortMode); }
    void setSortMode(const QString& text);
    [[nodiscard]] QString newDisplayName() const { return m_newDisplayName; }
    void setNewDisplayName(const QString& text);
    [[nodiscard]] QString newNotes() const { return m_newNotes; }
    void setNewNotes(const QString& text);
    [[nodiscard]] bool canCreate() const { return !m_newDisplayName.trimmed().isEmpty(); }
    [[nodiscard]] bool isMatchingEnabled() const;
    void setMatchingEnabled(bool enabled);
    [[nodiscard]] QString matchingText() const;
    [[nodiscard]] double threshold() const;
    void setThreshold(double threshold); // in hundredths
    [[nodiscard]] QString thresholdText() const;
    [[nodiscard]] bool isAskingDeletion() const { return m_profilePendingDeletion.has_value(); }
    [[nodiscard]] bool showDeleteAllConfirmation() const { return m_showDeleteAllConfirmation; }

    Q_INVOKABLE void refresh();
    // Does nothing without a name; otherwise empties both fields.
    Q_INVOKABLE void createProfile();

    // A row comes on the screen; the number stands for it until it goes. 0 for somebody who is no longer known.
    Q_INVOKABLE int beginRow(const QString& profileID);
    Q_INVOKABLE void endRow(int row);
    Q_INVOKABLE void setDisplayName(int row, const QString& text);
    Q_INVOKABLE void setNotes(int row, const QString& text);
    Q_INVOKABLE void toggle(int row, bool enabled);
    Q_INVOKABLE void saveNow(int row);

    // Each asks first.
    Q_INVOKABLE void deleteProfile(const QString& profileID);
    Q_INVOKABLE void deleteAll();
    Q_INVOKABLE void confirmDeletion();
    Q_INVOKABLE void cancelDeletion();
    Q_INVOKABLE void confirmDeleteAll();
    Q_INVOKABLE void cancelDeleteAll();

Q_SIGNALS:
    void sortModeChanged();
    void newProfileChanged();
    void matchingChanged();
    void confirmationChanged();

private:
    [[nodiscard]] std::vector<SpeakerProfileRow> makeRows() const;
    void takeProfiles();
    [[nodiscard]] SpeakerProfileEditing* editing(int row) const;
    void setPendingDeletion(std::optional<SpeakerProfile> profile);
    void setShowDeleteAllConfirmation(bool shows);

    AppModel& m_model;
    std::chrono::milliseconds m_saveDelay;
    bool m_isShown = false;
    ValueListModel<SpeakerProfileRow> m_profiles;
    SpeakerProfileSortMode m_sortMode = SpeakerProfileSortMode::createdDescending;
    QString m_newDisplayName;
    QString m_newNotes;
    std::optional<SpeakerProfile> m_profilePendingDeletion;
    bool m_showDeleteAllConfirmation = false;
    std::map<int, std::unique_ptr<SpeakerProfileEditing>> m_rows;
    int m_lastRow = 0;
};

} // namespace corvane
