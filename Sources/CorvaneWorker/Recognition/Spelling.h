// How a recogniser writes what it heard. A value; any thread.
#pragma once

namespace corvane {

enum class Spelling {
    Sentences, // with punctuation and capital letters
    BareWords, // in lower case
};

} // namespace corvane
