#include "CorvaneWorker/Recognition/SpeechModel.h"

#include "CorvaneWorker/WorkerError.h"

#include <QDir>
#include <QFileInfo>

namespace corvane {

namespace {

void requireFile(const QString& path) {
    const QFileInfo info(path);
    if (!info.isFile() || !info.isReadable() || info.size() == 0)
        throw WorkerError(QStringLiteral("The speech model is not installed properly: “%1” is missing or damaged. "
                                         "Reinstall the package pocketsphinx-en-us.")
                              .arg(path));
}

} // namespace

SpeechModel installedSpeechModel() {
    QString root = qEnvironmentVariable("CORVANE_WORKER_MODEL_DIR");
    if (root.isEmpty())
        root = QStringLiteral(CORVANE_WORKER_DEFAULT_MODEL_DIR);
    root = QDir::cleanPath(root);
    SpeechModel model{QStringLiteral("pocketsphinx-en-us"), root + QStringLiteral("/en-us"),
                      root + QStringLiteral("/en-us.lm.bin"), root + QStringLiteral("/cmudict-en-us.dict")};
    requireFile(model.language);
    requireFile(model.dictionary);
    for (const char* name : {"feat.params", "mdef", "means", "variances", "transition_matrices", "noisedict"})
        requireFile(model.acoustic + QLatin1Char('/') + QLatin1String(name));
    if (!QFileInfo::exists(model.acoustic + QStringLiteral("/mixture_weights")))
        requireFile(model.acoustic + QStringLiteral("/sendump"));
    return model;
}

} // namespace corvane
