import QtQuick

// The toolbar's place at the right of the header: the five controls "Reaktion", "Mix", "Farben",
// "Pausieren"/"Fortsetzen" and "Einstellungen" go into this row, in that order, with their popovers.
Row {
    spacing: 6
}
