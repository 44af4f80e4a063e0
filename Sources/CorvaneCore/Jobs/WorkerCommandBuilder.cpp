#include "CorvaneCore/Jobs/WorkerCommandBuilder.h"

#include "CorvaneContract/Jobs/WorkerArguments.h"

namespace corvane {

QStringList WorkerCommandBuilder::processArguments(const ProcessArguments& a) const {
    QStringList words{workerArguments::process,
                      workerArguments::audio,
                      a.audio,
                      workerArguments::outDir,
                      a.runDirectory,
                      workerArguments::device,
                      a.device,
                      workerArguments::backend,
                      a.backend,
                      workerArguments::language,
                      a.language};
    if (!a.diarizationEnabled)
        words << workerArguments::noDiarization;
    else if (a.speakerCountMode == speakerCountMode::automatic)
        words << workerArguments::autoSpeakers;
    else if (a.speakerCountMode == speakerCountMode::range)
        words << workerArguments::minSpeakers << QString::number(a.minSpeakers) << workerArguments::maxSpeakers
              << QString::number(a.maxSpeakers);
    else
        words << workerArguments::numSpeakers << QString::number(a.numSpeakers);
    return words;
}

QStringList WorkerCommandBuilder::speakerContextArguments(const QString& runDirectory, const QString& context) const {
    return {workerArguments::speakerContext, workerArguments::runDir, runDirectory, workerArguments::context, context};
}

QStringList WorkerCommandBuilder::speakerProfileExtractArguments(const QString& runDirectory, const QString& speaker,
                                                                 const QString& output) const {
    return {workerArguments::speakerProfiles,
            workerArguments::extract,
            workerArguments::runDir,
            runDirectory,
            workerArguments::speaker,
            speaker,
            workerArguments::out,
            output};
}

} // namespace corvane
