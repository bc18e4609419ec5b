import QtQuick
import Quellton.Gallery

// Four bars for bass, mids, highs and beat of the newest sound, shaped with `strength`, redrawn at
// most 30 times a second while `running`. A bar's fill is never lower than 4 so it is seen in silence.
Item {
    id: meter
    property real strength: 1
    property bool running: false

    implicitHeight: 64

    LevelMeterModel {
        id: levels
        strength: meter.strength
        running: meter.running
    }

    Row {
        anchors.verticalCenter: parent.verticalCenter
        spacing: 10

        Repeater {
            model: levels.names
            Column {
                id: bar
                required property int index
                required property string modelData
                width: (meter.width - 30) / 4
                spacing: 3

                Rectangle {
                    id: track
                    width: parent.width
                    height: meter.height - 3 - caption.implicitHeight
                    radius: Math.min(width, height) / 2
                    color: Theme.quaternaryFill

                    // The fill is the track's own shape cut off at the level, so a low level stays
                    // inside the track's rounded bottom rather than poking out of it.
                    Item {
                        // Read by screen readers (and tests) as the bar's value.
                        property real value: levels.levels[bar.index]
                        anchors.bottom: parent.bottom
                        width: parent.width
                        height: Math.max(track.height * value, 4)
                        clip: true
                        Accessible.role: Accessible.ProgressBar
                        Accessible.name: bar.modelData

                        Rectangle {
                            anchors.bottom: parent.bottom
                            width: track.width
                            height: track.height
                            radius: track.radius
                            color: Theme.accent
                        }
                    }
                }
                Text {
                    id: caption
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: bar.modelData
                    color: Theme.secondaryText
                    font.pixelSize: Theme.caption2Size
                    Accessible.ignored: true
                }
            }
        }
    }
}
