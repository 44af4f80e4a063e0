#include "CorvaneApp/Views/Window/ViewEngine.h"

#include "CorvaneApp/Views/Window/ControlAccessibility.h"
#include "CorvaneApp/Views/Window/RenderBackend.h"
#include "CorvaneApp/Views/Window/SymbolImageProvider.h"

// A documented function of the toolkit that none of its headers declares.
void qt_set_sequence_auto_mnemonic(bool enable);

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
        qt_set_sequence_auto_mnemonic(false); // a "&" in a label or a person's name is no shortcut
        return true;
    }();
    auto engine = std::make_unique<QQmlEngine>();
    engine->addImportPath(QStringLiteral("qrc:/"));
    engine->addImageProvider(QStringLiteral("symbol"), new SymbolImageProvider); // the engine owns it
    return engine;
}

} // namespace corvane
