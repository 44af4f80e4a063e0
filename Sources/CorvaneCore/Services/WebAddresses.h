// The pages of other people's web sites that the application opens in the user's browser.
#pragma once

#include <QUrl>

namespace corvane::webAddresses {

inline const QUrl huggingFaceAccount(QStringLiteral("https://huggingface.co/join"));
inline const QUrl huggingFaceModel(QStringLiteral("https://huggingface.co/pyannote/speaker-diarization-community-1"));
inline const QUrl huggingFaceTokens(QStringLiteral("https://huggingface.co/settings/tokens"));
inline const QUrl ollamaDownload(QStringLiteral("https://ollama.com/download"));
inline const QUrl homebrew(QStringLiteral("https://brew.sh"));

} // namespace corvane::webAddresses
