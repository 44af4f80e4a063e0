// Which of several named things a user means, and how one is named so briefly that it can be typed. Pure functions.
#pragma once

#include <QString>

#include <vector>

namespace corvane::ctl {

struct Named {
    QString id;
    QString title;
};

// The words of a refusal.
struct ChoiceWords {
    QString things;    // “meetings”
    QString nothing;   // what to say of an empty text
    QString notListed; // what to say where none fits; %1 is what was typed
};

// `words` is a whole id, the beginning of one in any letter case, or a title. A whole id wins; among beginnings and
// titles there must be only one that fits. Gives its place. Throws CtlError with ExitStatus::noSuchMeeting, naming
// those that fit if there are several.
[[nodiscard]] std::size_t choose(const std::vector<Named>& all, const QString& words, const ChoiceWords& refusal);

// The beginnings of the ids, in the order given: each fits no other id in any letter case, and is at least eight
// characters long where the id is. An id with which another one begins stands as a whole.
[[nodiscard]] std::vector<QString> shortIDs(const std::vector<Named>& all);

} // namespace corvane::ctl
