// The symbols of the design as pictures of any size in one colour: "image://symbol/<name>/<rrggbb>" or, with an alpha
// value first, "<aarrggbb>". The view engine owns it and may ask on a thread of its own.
#pragma once

#include <QQuickImageProvider>

namespace corvane {

class SymbolImageProvider final : public QQuickImageProvider {
public:
    SymbolImageProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    // Transparent if there is no symbol of that name.
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

// A symbol drawn in one colour, for what takes a picture by itself.
[[nodiscard]] QImage symbolImage(const QString& name, const QColor& color, const QSize& size);

} // namespace corvane
