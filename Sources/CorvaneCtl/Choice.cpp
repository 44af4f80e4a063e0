#include "CorvaneCtl/Choice.h"

#include "CorvaneCtl/CtlError.h"
#include "CorvaneCtl/Text.h"

#include <algorithm>
#include <numeric>

namespace corvane::ctl {

namespace {

constexpr qsizetype shortestID = 8;
constexpr std::size_t mostCandidates = 10;

[[noreturn]] void refuse(const QString& text) {
    throw CtlError(text, ExitStatus::noSuchMeeting);
}

qsizetype commonLength(const QString& a, const QString& b) {
    const auto end = std::min(a.size(), b.size());
    return std::mismatch(a.begin(), a.begin() + end, b.begin()).first - a.begin();
}

[[noreturn]] void refuseSeveral(const std::vector<Named>& all, const std::vector<std::size_t>& fitting,
                                const QString& words, const ChoiceWords& refusal) {
    const std::vector<QString> ids = shortIDs(all);
    QString text = QStringLiteral("“%1” fits %2 %3:").arg(words).arg(fitting.size()).arg(refusal.things);
    for (std::size_t i = 0; i < std::min(fitting.size(), mostCandidates); ++i)
        text += QStringLiteral("\n  %1  %2").arg(visibleText(ids[fitting[i]]), visibleText(all[fitting[i]].title));
    if (fitting.size() > mostCandidates)
        text += QStringLiteral("\n  and %1 more").arg(fitting.size() - mostCandidates);
    refuse(text);
}

} // namespace

std::size_t choose(const std::vector<Named>& all, const QString& words, const ChoiceWords& refusal) {
    if (words.trimmed().isEmpty())
        refuse(refusal.nothing);
    std::vector<std::size_t> fitting;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i].id.compare(words, Qt::CaseInsensitive) == 0)
            return i;
        if (all[i].title == words || all[i].id.startsWith(words, Qt::CaseInsensitive))
            fitting.push_back(i);
    }
    if (fitting.empty())
        refuse(refusal.notListed.arg(words));
    if (fitting.size() > 1)
        refuseSeveral(all, fitting, words, refusal);
    return fitting.front();
}

std::vector<QString> shortIDs(const std::vector<Named>& all) {
    std::vector<QString> folded;
    for (const Named& one : all) {
        folded.push_back(one.id);
        for (QChar& character : folded.back())
            character = character.toCaseFolded();
    }
    // In sorted order the ids that share the longest beginning are neighbours.
    std::vector<std::size_t> order(all.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return folded[a] < folded[b]; });
    std::vector<QString> result(all.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        const QString& id = all[order[i]].id;
        qsizetype shared = 0;
        if (i > 0)
            shared = commonLength(folded[order[i]], folded[order[i - 1]]);
        if (i + 1 < order.size())
            shared = std::max(shared, commonLength(folded[order[i]], folded[order[i + 1]]));
        qsizetype length = std::min(id.size(), std::max(shortestID, shared + 1));
        if (length < id.size() && id[length].isLowSurrogate())
            ++length;
        result[order[i]] = id.left(length);
    }
    return result;
}

} // namespace corvane::ctl
