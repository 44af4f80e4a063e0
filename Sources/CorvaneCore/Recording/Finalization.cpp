#include "CorvaneCore/Recording/Finalization.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneCore/Recording/AudioFileMixer.h"

#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>

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
    const QFileInfo output(plan.output);
    const QString mixDirectory = output.absolutePath() + QLatin1Char('/') + plan.meetingID + QStringLiteral("-mix");
    const QString result = mixDirectory + QLatin1Char('/') + output.fileName();
    auto cleaning = qScopeGuard([&mixDirectory] { QDir(mixDirectory).removeRecursively(); });
    if (plan.systemChunks.empty()) {
        AudioChunkConcatenator::concatenate(files, plan.chunks, result, progress);
        replaceFile(plan.output, result);
        return plan.output;
    }
    cleaning.dismiss();
    createPrivateDirectory(mixDirectory);
    const QString microphone = AudioChunkConcatenator::concatenate(
        files, plan.chunks, mixDirectory + QStringLiteral("/microphone.wav"), stretch(progress, 0.0, 0.2));
    const QString system = AudioChunkConcatenator::concatenate(
        files, plan.systemChunks, mixDirectory + QStringLiteral("/system.wav"), stretch(progress, 0.2, 0.5));
    AudioFileMixer::mix(files, microphone, system, result, stretch(progress, 0.5, 1.0));
    replaceFile(plan.output, result);
    QDir(mixDirectory).removeRecursively();
    return plan.output;
}

} // namespace corvane
