#include "CorvaneWorker/Recognition/RecognitionModel.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace corvane {

namespace {

using Kind = RecognitionModel::Kind;

// The files of a directory that are networks, and the tokens.
class ModelFiles {
public:
    explicit ModelFiles(const QString& directory) : m_directory(directory) {
        for (const QString& name : m_directory.entryList(QDir::Files | QDir::Readable, QDir::Name))
            if (m_directory.entryInfoList({name}).first().size() > 0)
                m_names << name;
    }

    // The path of the network whose name matches; empty if there is none.
    [[nodiscard]] QString network(const QString& pattern) const {
        const QRegularExpression expression(pattern + QStringLiteral(R"(.*\.(onnx|ort)$)"));
        QStringList found = m_names.filter(expression);
        std::stable_sort(found.begin(), found.end(), [](const QString& left, const QString& right) {
            return left.contains(QLatin1String("int8")) && !right.contains(QLatin1String("int8"));
        });
        return found.isEmpty() ? QString() : m_directory.filePath(found.first());
    }

    [[nodiscard]] QString tokens() const {
        const QStringList found = m_names.filter(QRegularExpression(QStringLiteral(R"((^|[-_])tokens\.txt$)")));
        return found.isEmpty() ? QString() : m_directory.filePath(found.first());
    }

private:
    QDir m_directory;
    QStringList m_names;
};

bool isLanguage(const QString& part) {
    static const QRegularExpression twoLetters(QStringLiteral("^[a-z]{2}$"));
    return twoLetters.match(part).hasMatch() && QLocale(part).language() != QLocale::C &&
           QLocale(part).name().startsWith(part);
}

QStringList languagesOf(const QString& name) {
    QStringList languages;
    for (const QString& part : name.toLower().split(QRegularExpression(QStringLiteral("[-_.]"))))
        if (isLanguage(part))
            languages << part;
    return languages;
}

// The kind of a model that is one network, by the name that its makers give it.
std::optional<Kind> singleNetworkKind(const QString& name) {
    const auto has = [&name](const char* part) { return name.contains(QLatin1String(part), Qt::CaseInsensitive); };
    if (has("sense-voice") || has("sensevoice"))
        return Kind::SenseVoice;
    if (has("paraformer"))
        return Kind::Paraformer;
    if (has("zipformer") && has("ctc"))
        return Kind::ZipformerCtc;
    if (has("wenet"))
        return Kind::WenetCtc;
    if (has("nemo") || has("ctc") || has("parakeet"))
        return Kind::NemoCtc;
    return std::nullopt;
}

std::optional<Kind> kindOf(const RecognitionModel& model, const ModelFiles& files) {
    const bool paired = !model.encoder.isEmpty() && !model.decoder.isEmpty();
    if (paired && !files.network(QStringLiteral("^decoder_model_merged")).isEmpty())
        return Kind::Moonshine;
    if (paired && !model.joiner.isEmpty())
        return Kind::Transducer;
    if (paired)
        return model.name.contains(QLatin1String("canary"), Qt::CaseInsensitive) ? Kind::Canary : Kind::Whisper;
    return model.model.isEmpty() ? std::nullopt : singleNetworkKind(model.name);
}

} // namespace

bool RecognitionModel::knows(const QString& language) const {
    return language.isEmpty() || languages.isEmpty() || languages.contains(language);
}

std::optional<RecognitionModel> describeModel(const QString& directory) {
    const ModelFiles files(directory);
    RecognitionModel model;
    model.name = QFileInfo(directory).fileName();
    model.tokens = files.tokens();
    model.encoder = files.network(QStringLiteral("encoder"));
    model.decoder = files.network(QStringLiteral("decoder"));
    model.joiner = files.network(QStringLiteral("joiner"));
    model.model = files.network(QStringLiteral("model"));
    const auto kind = kindOf(model, files);
    if (!kind || model.tokens.isEmpty())
        return std::nullopt;
    model.kind = *kind;
    model.languages = languagesOf(model.name);
    return model;
}

QString languageCode(const QString& language) {
    QString plain = language.trimmed().toLower();
    plain.replace(QLatin1Char('_'), QLatin1Char('-'));
    plain = plain.section(QLatin1Char('-'), 0, 0);
    if (plain == QLatin1String("auto"))
        return {};
    for (const auto known : {QLocale::English, QLocale::French, QLocale::German, QLocale::Spanish, QLocale::Italian})
        if (plain == QLocale::languageToString(known).toLower())
            return QLocale(known).name().left(2);
    return plain;
}

} // namespace corvane
