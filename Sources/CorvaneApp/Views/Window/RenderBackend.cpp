#include "CorvaneApp/Views/Window/RenderBackend.h"

#include <QDir>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQuickWindow>

namespace corvane {

namespace {

// Asking the graphics library costs some 70 MB that never come back, even if it then answers that it has no hardware.
bool hasGraphicsHardware() {
    const QDir devices(QStringLiteral("/dev"));
    return !QDir(QStringLiteral("/dev/dri"))
                .entryList({QStringLiteral("render*"), QStringLiteral("card*")}, QDir::System)
                .isEmpty() ||
           !devices
                .entryList({QStringLiteral("nvidia[0-9]*"), QStringLiteral("mali*"), QStringLiteral("dxg")},
                           QDir::System)
                .isEmpty();
}

bool isDrawnByHardware() {
    if (!hasGraphicsHardware())
        return false;
    QOpenGLContext context;
    if (!context.create())
        return false;
    QOffscreenSurface surface;
    surface.setFormat(context.format());
    surface.create();
    if (!surface.isValid() || !context.makeCurrent(&surface))
        return false;
    const auto* name = reinterpret_cast<const char*>(context.functions()->glGetString(GL_RENDERER));
    const QByteArray renderer(name);
    context.doneCurrent();
    return !renderer.isEmpty() && !renderer.contains("llvmpipe") && !renderer.contains("softpipe") &&
           !renderer.contains("swrast");
}

} // namespace

void chooseRenderBackend() {
    if (!qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND") || !qEnvironmentVariableIsEmpty("QSG_RHI_BACKEND"))
        return;
    if (!isDrawnByHardware())
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

} // namespace corvane
