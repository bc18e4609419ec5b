import QtQuick
import Quellton

// The colour world for every visualization: "Original" (each its own) or one of the palettes.
Popover {
    id: popover
    title: "Farben"
    firstControl: original

    Column {
        spacing: 14

        TextLabel {
            text: "Farbwelt"
            color: Theme.text
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
        }
        Grid {
            id: grid
            columns: 3
            columnSpacing: 10
            rowSpacing: 12
            Accessible.role: Accessible.Grouping
            Accessible.name: "Farbwelt"

            Swatch {
                id: original
                text: "Original"
                selected: AppModel.paletteOverride < 0
                onClicked: AppModel.paletteOverride = -1
            }
            Repeater {
                model: Gallery.controls.palettes
                Swatch {
                    required property var modelData
                    text: modelData.name
                    colors: modelData.colors
                    selected: AppModel.paletteOverride === modelData.id
                    onClicked: AppModel.paletteOverride = modelData.id
                }
            }
        }
    }
}
