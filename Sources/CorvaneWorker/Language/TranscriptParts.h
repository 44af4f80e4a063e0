// A transcript cut into pieces that fit into a language model's context. Pure functions; any thread.
#pragma once

#include "CorvaneContract/Transcripts/TranscriptResult.h"

#include <QString>

#include <vector>

namespace corvane {

// How many tokens a text is for a model, rather too many than too few: a third of its bytes in UTF-8. English has four
// bytes to a token, other European languages three and more; scripts of three bytes a character up to one token each.
[[nodiscard]] int estimatedTokens(const QString& text);

// The longest beginning of the text that is estimated at no more than that, without half a character.
[[nodiscard]] QString cutToTokens(const QString& text, int mostTokens);

// The speaker turns, each a line “LABEL: what was said”, in pieces of at most `mostTokens`. A turn that is longer by
// itself goes on in the next piece under its label. Nothing that was said is left out.
[[nodiscard]] std::vector<QString> transcriptParts(const std::vector<TranscriptSegment>& segments, int mostTokens);

// Joins neighbours as long as they fit together. A text that does not fit by itself stays alone.
[[nodiscard]] std::vector<QString> joinedTexts(const std::vector<QString>& texts, int mostTokens);

} // namespace corvane
