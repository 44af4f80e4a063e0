// Names taken out of paths, where Qt's own functions differ from what a person calls a file's name. Pure functions.
#pragma once

#include <QString>

namespace corvane {

// "/a/b.c.wav" gives "b.c.wav".
[[nodiscard]] QString lastPathComponent(const QString& path);

// The extension without its full stop, in its own letter case. ".hidden", "name." and "name" have none.
[[nodiscard]] QString pathExtension(const QString& path);

// The last path component without its extension: what a file is called. Never empty for a named file.
[[nodiscard]] QString fileTitle(const QString& path);

// Whether a text can name an entry directly inside a directory. Ids that come out of documents are data from outside:
// one with a slash or of two full stops must never lead anywhere else.
[[nodiscard]] bool isPlainName(const QString& name);

} // namespace corvane
