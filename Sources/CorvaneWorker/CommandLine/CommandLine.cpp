#include "CorvaneWorker/CommandLine/CommandLine.h"

#include "CorvaneContract/Jobs/WorkerArguments.h"

#include <algorithm>
#include <map>

namespace corvane {

namespace {

using Options = std::map<QString, QString>;

Options readOptions(const QStringList& arguments, const QStringList& withValue, const QStringList& flags) {
    Options options;
    for (qsizetype index = 0; index < arguments.size(); ++index) {
        const QString& name = arguments[index];
        if (flags.contains(name)) {
            options[name] = {};
        } else if (!withValue.contains(name)) {
            throw UsageError(QStringLiteral("Unknown option “%1”.").arg(name));
        } else if (index + 1 == arguments.size()) {
            throw UsageError(QStringLiteral("The option %1 needs a value.").arg(name));
        } else {
            options[name] = arguments[++index];
        }
    }
    return options;
}

QString required(const Options& options, const QString& name) {
    const auto found = options.find(name);
    if (found == options.end())
        throw UsageError(QStringLiteral("The option %1 is missing.").arg(name));
    return found->second;
}

int count(const Options& options, const QString& name, int fallback) {
    const auto found = options.find(name);
    if (found == options.end())
        return fallback;
    bool isNumber = false;
    const int value = found->second.toInt(&isNumber);
    if (!isNumber)
        throw UsageError(QStringLiteral("The value of %1 is no number: “%2”.").arg(name, found->second));
    return std::max(1, value);
}

SpeakerLimits speakerLimits(const Options& options) {
    if (options.contains(workerArguments::numSpeakers)) {
        const int number = count(options, workerArguments::numSpeakers, 1);
        return {number, number};
    }
    SpeakerLimits limits;
    limits.least = count(options, workerArguments::minSpeakers, limits.least);
    limits.most = std::max(limits.least, count(options, workerArguments::maxSpeakers, limits.most));
    return limits;
}

ProcessCommand parseProcess(const QStringList& arguments) {
    namespace words = workerArguments;
    const Options options = readOptions(arguments,
                                        {words::audio, words::outDir, words::device, words::backend, words::language,
                                         words::minSpeakers, words::maxSpeakers, words::numSpeakers},
                                        {words::noDiarization, words::autoSpeakers});
    ProcessCommand command;
    command.audio = required(options, words::audio);
    command.outDirectory = required(options, words::outDir);
    if (command.outDirectory.isEmpty())
        throw UsageError(QStringLiteral("The value of %1 is empty.").arg(words::outDir));
    command.language = required(options, words::language);
    if (const auto device = options.find(words::device); device != options.end())
        command.device = device->second;
    if (const auto backend = options.find(words::backend); backend != options.end())
        command.backend = backend->second;
    if (options.contains(words::noDiarization))
        command.separation = SpeakerSeparation::Off;
    command.speakers = speakerLimits(options);
    return command;
}

ExtractCommand parseExtract(const QStringList& arguments) {
    namespace words = workerArguments;
    const Options options = readOptions(arguments, {words::runDir, words::speaker, words::out}, {});
    return {required(options, words::runDir), required(options, words::speaker), required(options, words::out)};
}

ContextCommand parseContext(const QStringList& arguments) {
    namespace words = workerArguments;
    const Options options = readOptions(arguments, {words::runDir, words::context}, {});
    return {required(options, words::runDir), required(options, words::context)};
}

} // namespace

Command parseCommandLine(const QStringList& arguments) {
    if (arguments.isEmpty())
        throw UsageError(QStringLiteral("No command was given."));
    const QString& word = arguments.front();
    if (word == QLatin1String("--help") || word == QLatin1String("-h"))
        return HelpCommand{};
    if (word == QLatin1String("--version"))
        return VersionCommand{};
    if (word == QLatin1String("models") && arguments.size() == 1)
        return ModelsCommand{};
    if (word == workerArguments::process)
        return parseProcess(arguments.mid(1));
    if (word == workerArguments::speakerContext)
        return parseContext(arguments.mid(1));
    if (word == workerArguments::speakerProfiles && arguments.value(1) == workerArguments::extract)
        return parseExtract(arguments.mid(2));
    throw UsageError(QStringLiteral("Unknown command “%1”.").arg(word));
}

QString usageText() {
    return QStringLiteral(
        "Usage:\n"
        "  corvane-worker process --audio FILE --out-dir DIR --language LANGUAGE [--device NAME] [--backend NAME]\n"
        "                 [--no-diarization | --auto-speakers | --num-speakers N | --min-speakers N --max-speakers M]\n"
        "      Transcribe a recording into the run directory DIR.\n"
        "  corvane-worker speaker-context --run-dir DIR --context TEXT\n"
        "      Have the language model describe a finished run anew; TEXT is what is known about the meeting.\n"
        "  corvane-worker speaker-profiles extract --run-dir DIR --speaker LABEL --out FILE\n"
        "      Write the voice of one speaker of a finished run as numbers.\n"
        "  corvane-worker models\n"
        "      Show what is installed, what is missing, and where models are looked for.\n"
        "  corvane-worker --help | --version\n"
        "\n"
        "Environment:\n"
        "  CORVANE_WORKER_MODELS          directories of models, with colons between them; looked in first\n"
        "  CORVANE_WORKER_MODEL_DIR       directory of the PocketSphinx model\n"
        "  CORVANE_WORKER_ENGINE          \"pocketsphinx\": leave neural recognisers out\n"
        "  CORVANE_WORKER_LLM             \"ollama\": summarize with the local Ollama; \"off\": do not\n"
        "  CORVANE_WORKER_OLLAMA_ENDPOINT address of Ollama (http://127.0.0.1:11434)\n"
        "  CORVANE_WORKER_OLLAMA_MODEL    model to ask (qwen3:1.7b)\n"
        "  CORVANE_WORKER_OLLAMA_TIMEOUT  seconds that Ollama may stay silent (45)\n"
        "  CORVANE_WORKER_OLLAMA_NUM_CTX  tokens of a question with its answer (8192)\n"
        "\n"
        "The manual page corvane-worker(1) has more.\n");
}

} // namespace corvane
