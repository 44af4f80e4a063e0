#include "CorvaneCore/VoiceProfiles/VoiceExtraction.h"

#include "CorvaneContract/Files/Files.h"
#include "CorvaneContract/Text/UserText.h"
#include "CorvaneCore/Jobs/WorkerCommandBuilder.h"
#include "CorvaneCore/Library/FileNames.h"

#include <QCryptographicHash>

#include <limits>

namespace corvane {

namespace {
constexpr std::int32_t couldNotStart = 2;
constexpr qsizetype longestLabelBytes = 160; // of the 255 that a file name may have
constexpr qsizetype hashDigits = 16;
} // namespace

SpeakerProfileExtractionError SpeakerProfileExtractionError::workerFailed(const CommandResult& result) {
    return SpeakerProfileExtractionError(
        UserText::tr("worker exited with status %1: %2").arg(QString::number(result.status), result.output));
}

CommandResult VoiceExtraction::run(ProcessLauncher& processes, const CommandCancellation& cancelled) const {
    // An argument ends there: the worker would take what stands before it for another speaker.
    if (speaker.contains(QChar(0)))
        return {couldNotStart, UserText::tr("the speaker's label holds a NUL character")};
    try {
        return processes.run(worker,
                             WorkerCommandBuilder{worker}.speakerProfileExtractArguments(runDirectory, speaker, output),
                             cancelled);
    } catch (const LaunchError& error) {
        return {couldNotStart, error.text()};
    }
}

ExtractedSpeakerEmbedding VoiceExtraction::read() const {
    const auto content = readFile(output);
    if (!content)
        throw SpeakerProfileExtractionError(UserText::tr("%1 cannot be read").arg(lastPathComponent(output)));
    ExtractedSpeakerEmbedding voice = decodeExtractedSpeakerEmbedding(*content);
    constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max(); // that the store takes
    if (voice.dimension < 0 || voice.dimension > largest || voice.sampleCount < 0 || voice.sampleCount > largest)
        throw SpeakerProfileExtractionError(
            UserText::tr("%1 holds a count that cannot be").arg(lastPathComponent(output)));
    return voice;
}

QString speakerFileName(const QString& prefix, const QString& speaker) {
    const QByteArray label = speaker.toUtf8();
    QByteArray name;
    for (const char byte : label) {
        const auto value = static_cast<unsigned char>(byte);
        if (value < 0x20 || value == 0x7F || byte == '/' || byte == '%')
            name += '%' + QByteArray(1, byte).toHex().toUpper();
        else
            name += byte;
    }
    if (name.size() > longestLabelBytes) {
        const QByteArray hash = QCryptographicHash::hash(label, QCryptographicHash::Sha256).toHex().first(hashDigits);
        // A character cut in two is left out: file names are text.
        QString beginning = QString::fromUtf8(name.first(longestLabelBytes));
        while (beginning.endsWith(QChar::ReplacementCharacter))
            beginning.chop(1);
        return prefix + beginning + QLatin1Char('-') + QString::fromLatin1(hash) + QStringLiteral(".json");
    }
    return prefix + QString::fromUtf8(name) + QStringLiteral(".json");
}

} // namespace corvane
