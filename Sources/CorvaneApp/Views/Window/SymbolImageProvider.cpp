#include "CorvaneApp/Views/Window/SymbolImageProvider.h"

#include <QColor>
#include <QPainter>
#include <QSvgRenderer>

namespace corvane {

QImage symbolImage(const QString& name, const QColor& color, const QSize& size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(QStringLiteral(":/Corvane/Icons/%1.svg").arg(name));
    if (!renderer.isValid())
        return image;
    QPainter painter(&image);
    renderer.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

QImage SymbolImageProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    constexpr int ordinarySize = 24;
    const QSize wanted = requestedSize.isEmpty() ? QSize(ordinarySize, ordinarySize) : requestedSize;
    *size = wanted;
    const qsizetype slash = id.lastIndexOf(QLatin1Char('/'));
    const QColor color(QLatin1Char('#') + id.mid(slash + 1));
    return symbolImage(id.left(slash), color.isValid() ? color : QColor(Qt::black), wanted);
}

} // namespace corvane
