import QtQuick
import Quellton

// The toolbar at the right of the header: reaction, Mix, colours, pause and settings, each (but
// pause) with its popover.
Row {
    spacing: 6

    ToolbarButton {
        text: "Reaktion"
        symbol: "dial.medium"
        tip: "Wie stark der Hintergrund auf die Musik reagiert"
        popover: ReactionPopover {}
    }
    ToolbarButton {
        text: "Mix"
        symbol: AppModel.mixEnabled ? "shuffle.circle.fill" : "shuffle"
        tip: "Mix: ausgewählte Darstellungen wechseln sich ab"
        popover: MixPopover {}
    }
    ToolbarButton {
        text: "Farben"
        symbol: "paintpalette"
        tip: "Farbwelt für alle Darstellungen"
        popover: PalettePopover {}
    }
    ToolbarButton {
        text: AppModel.paused ? "Fortsetzen" : "Pausieren"
        symbol: AppModel.paused ? "play.fill" : "pause.fill"
        tip: AppModel.paused ? "Hintergrund fortsetzen" : "Hintergrund anhalten"
        onClicked: AppModel.paused = !AppModel.paused
    }
    ToolbarButton {
        text: "Einstellungen"
        symbol: "slider.horizontal.3"
        tip: "Einstellungen"
        popover: SettingsPopover {}
    }
}
