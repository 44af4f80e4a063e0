// A recogniser on disk, as its makers publish it: what kind of network it is and which languages it knows, told by the
// names of its files. Pure in the content of the directory; any thread.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace corvane {

struct RecognitionModel {
    enum class Kind { Moonshine, Whisper, Canary, Transducer, NemoCtc, ZipformerCtc, WenetCtc, SenseVoice, Paraformer };

    Kind kind = Kind::Moonshine;
    QString name;   // of the directory; for metadata
    QString tokens; // a file
    QString model;  // a file; of the kinds that are one network
    QString encoder;
    QString decoder;
    QString joiner;        // of transducers
    QStringList languages; // two letters each; empty if it finds out by itself or knows many

    // Whether it can be used for a language as languageCode() gives it.
    [[nodiscard]] bool knows(const QString& language) const;
};

// The model in the directory, or nothing if its files are not those of a model of a known kind. Of two forms of one
// network the 8-bit one is taken: on a processor it is twice as fast.
//
// Its languages are the two-letter parts of the directory's name ("zipformer-fr", "whisper-small.en"). A name without
// such a part means a model that knows many.
[[nodiscard]] std::optional<RecognitionModel> describeModel(const QString& directory);

// "en" for "en", "en-GB", "EN_us" and "english", "fr" for "fr-CA" and "French"; of any other text the part before the
// first hyphen in lower case. Empty for an empty text and for "auto".
[[nodiscard]] QString languageCode(const QString& language);

} // namespace corvane
