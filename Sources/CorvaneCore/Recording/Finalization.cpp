#include "CorvaneCore/Recording/Finalization.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneCore/Recording/AudioFileMixer.h"

#include <QDir>
#include <QFileInfo>

namespace corvane {

namespace {

// A stretch of a longer piece of work.
AudioProgress stretch(const AudioProgress& progress, double from, double to) {
    if (!progress)
        return {};
    return [progress, from, to](double fraction) { progress(from + fraction * (to - from)); };
}

} // namespace

QString finalizeChunks(AudioFiles& files, const FinalizationPlan& plan, const AudioProgress& progress) {
    if (plan.systemChunks.empty())
        return AudioChunkConcatenator::concatenate(files, plan.chunks, plan.output, progress);
    const QString mixDirectory =
        QFileInfo(plan.output).absolutePath() + QLatin1Char('/') + plan.meetingID + QStringLiteral("-mix");
    createPrivateDirectory(mixDirectory);
    const QString microphone = AudioChunkConcatenator::concatenate(
        files, plan.chunks, mixDirectory + QStringLiteral("/microphone.wav"), stretch(progress, 0.0, 0.2));
    const QString system = AudioChunkConcatenator::concatenate(
        files, plan.systemChunks, mixDirectory + QStringLiteral("/system.wav"), stretch(progress, 0.2, 0.5));
    QString result = AudioFileMixer::mix(files, microphone, system, plan.output, stretch(progress, 0.5, 1.0));
    QDir(mixDirectory).removeRecursively();
    return result;
}

} // namespace corvane
