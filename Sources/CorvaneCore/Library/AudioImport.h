// Copies an audio or movie file into the data directory. The copy appears under its name only when it is whole and on
// the disk; a full disk or a crash leaves nothing half-made under that name. Blocking: called beside the main thread.
#pragma once

#include "CorvaneContract/Error.h"

#include <QString>

#include <functional>

namespace corvane {

class AudioImportError : public Error {
public:
    using Error::Error;
};

// `<recordings>/<fresh UUID>.<extension of the source, or "wav">`.
[[nodiscard]] QString uniqueImportedAudioURL(const QString& recordings, const QString& source);

// `progress` gets the fraction copied, from 0 to 1, on the calling thread; what it throws ends the copying, as any
// other failure does, without a trace. The copy is its owner's alone. Throws
// AudioImportError if the source is not a regular file, cannot be read, or the copy cannot be written.
void copyAudioFile(const QString& source, const QString& target, const std::function<void(double)>& progress);

} // namespace corvane
