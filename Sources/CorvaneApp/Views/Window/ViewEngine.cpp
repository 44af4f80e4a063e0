#include "CorvaneApp/Views/Window/ViewEngine.h"

#include "CorvaneApp/Views/Window/ControlAccessibility.h"
#include "CorvaneApp/Views/Window/RenderBackend.h"
#include "CorvaneApp/Views/Window/SymbolImageProvider.h"

// The views are part of a static library, whose resources the linker takes only if they are named.
static void takeViews() {
    Q_INIT_RESOURCE(qmlcache_CorvaneAppWindow);
}

namespace corvane {

std::unique_ptr<QQmlEngine> makeViewEngine() {
    [[maybe_unused]] static const bool isPrepared = [] {
        takeViews();
        installControlAccessibility();
        chooseRenderBackend();
        return true;
    }();
    auto engine = std::make_unique<QQmlEngine>();
    engine->addImportPath(QStringLiteral("qrc:/"));
    engine->addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider); // the engine owns it
    return engine;
}

} // namespace corvane
