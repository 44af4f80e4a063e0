// The argument vectors of the worker's subcommands, without the executable itself. Nothing is quoted, as no shell is
// involved, and no value is checked: what the settings hold is passed on. A value; any thread.
#pragma once

#include "CorvaneCore/Library/MeetingMetadata.h"

#include <QString>
#include <QStringList>

namespace corvane {

// What a processing run is asked to do.
struct ProcessArguments {
    QString audio;
    QString runDirectory;
    qint64 numSpeakers = 2;
    bool diarizationEnabled = true;
    QString speakerCountMode = speakerCountMode::automatic; // an unknown word means a fixed count
    qint64 minSpeakers = 1;
    qint64 maxSpeakers = 8;
    QString device;
    QString backend;
    QString language;
};

struct WorkerCommandBuilder {
    QString executable;

    [[nodiscard]] QStringList processArguments(const ProcessArguments& arguments) const;
    [[nodiscard]] QStringList speakerContextArguments(const QString& runDirectory, const QString& context) const;
    [[nodiscard]] QStringList speakerProfileExtractArguments(const QString& runDirectory, const QString& speaker,
                                                             const QString& output) const;
};

} // namespace corvane
