#include "CorvanePlatform/Linux/Frontmost/WindowPrivacy.h"

#include <QRegularExpression>

namespace corvane {

namespace {

// Quotation marks and marks of direction that some languages put around a title.
QString bare(const QString& title) {
    QString result = title;
    static const QRegularExpression marks(QStringLiteral("[\\x{200B}\\x{200E}\\x{200F}\\x{202A}-\\x{202E}“”„\"]"));
    return result.remove(marks).trimmed();
}

bool endsWithParenthesis(const QString& title) {
    return title.endsWith(u')') || title.endsWith(u'）') || title.endsWith(u']') || title.endsWith(u'】');
}

bool endsLikeAnOrdinaryWindow(Browser browser, const QString& title) {
    for (const QString& product : productNames(browser)) {
        const QRegularExpression ordinary(QStringLiteral("(^|\\s)%1( Beta| Dev| Canary| Nightly)?(\\s*[-–—:]+\\s.+)?$")
                                              .arg(QRegularExpression::escape(bare(product))));
        // From its last place on, so that a page which names a browser in its title does not decide.
        const qsizetype last = title.lastIndexOf(bare(product));
        if (last >= 0 && ordinary.match(title.sliced(std::max<qsizetype>(0, last - 1))).hasMatch())
            return true;
    }
    return false;
}

} // namespace

WindowPrivacy windowPrivacy(Browser browser, BrowserWindow kind, const QString& accessibleTitle,
                            const std::optional<QString>& title) {
    // A word that Edge leaves in English everywhere; it puts it before its own name.
    if (accessibleTitle.contains(QLatin1String("InPrivate"), Qt::CaseInsensitive))
        return WindowPrivacy::doubtful;
    if (kind == BrowserWindow::webApplication && title && *title == accessibleTitle)
        return WindowPrivacy::ordinary;
    const QString bareTitle = bare(accessibleTitle);
    if (bareTitle.isEmpty() || endsWithParenthesis(bareTitle))
        return WindowPrivacy::doubtful;
    if (kind == BrowserWindow::webApplication || endsLikeAnOrdinaryWindow(browser, bareTitle))
        return WindowPrivacy::ordinary;
    return WindowPrivacy::doubtful;
}

} // namespace corvane
