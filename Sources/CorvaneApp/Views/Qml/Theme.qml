// The design's tokens: every colour, size, distance, radius and duration of the window stands here and nowhere else.
// Sizes are in device-independent pixels; text grows with the desktop's own text size.
pragma Singleton
import QtQuick

QtObject {
    id: theme

    // Set by the window from the desktop's preferences.
    property bool isDark: false
    property bool isMotionReduced: false

    // Colour. Warm paper and ink, one teal accent; red belongs to recording, deleting and failing. No name begins with
    // "on" and a capital: that would declare a handler of a signal, and the colour would stay black.
    readonly property color window: isDark ? "#15181c" : "#f6f4f0"
    readonly property color sidebar: isDark ? "#111316" : "#ebe8e1"
    readonly property color surface: isDark ? "#1e2227" : "#ffffff"
    readonly property color field: isDark ? "#14171b" : "#fbfaf8"
    readonly property color line: isDark ? "#333a42" : "#dcd8cf"
    readonly property color controlLine: isDark ? "#6b7580" : "#7f848a"
    readonly property color text: isDark ? "#edeff1" : "#1c2126"
    readonly property color secondary: isDark ? "#a3adb8" : "#5a636d"
    readonly property color selectedSecondary: isDark ? "#b6bfc9" : "#48515a" // on what is selected
    readonly property color accent: isDark ? "#6cc5c9" : "#17666d"
    readonly property color accentContent: isDark ? "#0c1719" : "#ffffff"
    readonly property color positive: isDark ? "#74c993" : "#23754a"
    readonly property color negative: isDark ? "#ff8a7d" : "#b3261e"
    readonly property color negativeContent: isDark ? "#2a0907" : "#ffffff"
    readonly property color shadow: isDark ? "#2e000000" : "#0b1c2126"
    readonly property color scrim: isDark ? "#99000000" : "#59000000"

    // The names that the panels have for the tone of a symbol.
    function tone(name) {
        switch (name) {
        case "accent":
            return accent;
        case "positive":
            return positive;
        case "negative":
            return negative;
        default:
            return secondary;
        }
    }

    // Of a colour laid over another: what the pointer is on, what is pressed, what is selected.
    function tint(base, opacity) {
        return Qt.rgba(base.r, base.g, base.b, opacity);
    }
    readonly property real hoverOpacity: 0.14
    readonly property real pressOpacity: 0.22
    readonly property real selectOpacity: 0.18
    readonly property real badgeOpacity: 0.13
    readonly property real disabledOpacity: 0.42

    // Type.
    readonly property real textScale: Math.max(0.8, Math.min(2, Application.font.pixelSize > 0 ? Application.font.pixelSize / 13 : Application.font.pointSize / 10))
    readonly property int captionSize: Math.round(11.5 * textScale)
    readonly property int bodySize: Math.round(13.5 * textScale)
    readonly property int headlineSize: Math.round(15 * textScale)
    readonly property int titleSize: Math.round(20 * textScale)
    readonly property int displaySize: Math.round(26 * textScale)
    readonly property string monospace: "monospace"

    // Space.
    readonly property int hair: 1
    readonly property int tight: 4
    readonly property int small: 8
    readonly property int medium: 12
    readonly property int large: 16
    readonly property int wide: 24
    readonly property int vast: 40
    readonly property int controlHeight: Math.round(32 * Math.max(1, textScale))
    readonly property int symbolSize: Math.round(17 * textScale)
    readonly property int columnWidth: 860
    readonly property int wideColumnWidth: 900
    readonly property int sheetWidth: 820
    readonly property int settingsWidth: 680
    readonly property int sheetHeight: 690
    readonly property int stepListWidth: 176

    // Form.
    readonly property int smallRadius: 6
    readonly property int radius: 10
    readonly property int largeRadius: 16
    readonly property int focusWidth: 2

    // Motion, in milliseconds.
    readonly property int quick: isMotionReduced ? 0 : 110
    readonly property int calm: isMotionReduced ? 0 : 200

    // The question about a call.
    readonly property int noticeRadius: 18
    readonly property int noticeSlide: 100
    readonly property int noticeDuration: 220
    readonly property int noticeSymbolSize: 24
    readonly property int noticeSymbolFrame: 28
    readonly property int noticeTextSize: Math.round(13 * textScale)
}
