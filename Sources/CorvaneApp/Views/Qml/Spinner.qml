// Something is under way. Still where motion is not wanted.
import QtQuick

Symbol {
    id: spinner

    name: "circle.dotted"
    color: Theme.secondary

    RotationAnimator on rotation  {
        from: 0
        to: 360
        duration: 1400
        loops: Animation.Infinite
        running: spinner.visible && !Theme.isMotionReduced
    }
}
