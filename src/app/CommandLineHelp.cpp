#include "CommandLineHelp.h"

#include "Catalog.h"
#include "Palette.h"

namespace quellton::CommandLineHelp {

std::string usage() {
    const std::string visualizations = std::to_string(catalog().size());
    const std::string lastPalette = std::to_string(Palette::all().size() - 1);
    return "Aufruf: quellton [--autostart]\n"
           "       quellton --snapshots ORDNER [ZEIT]\n"
           "       quellton --selftest\n"
           "       quellton --still KENNUNG BREITE HÖHE ZEIT DATEI [FARBWELT]\n"
           "       quellton --bench\n"
           "       quellton --icon DATEI\n"
           "       quellton --help | --version\n"
           "\n"
           "Ohne Betriebsart startet Quellton: die gewählte Darstellung läuft als bewegter\n"
           "Schreibtischhintergrund, dazu ein Symbol im Systembereich und die Galerie.\n"
           "\n"
           "Betriebsarten ohne Fenster und ohne Ton; die erste passende dieser Reihe gilt:\n"
           "  --snapshots ORDNER [ZEIT]\n"
           "      je ein Standbild (960 × 540) aller " + visualizations + " Darstellungen als\n"
           "      ORDNER/KENNUNG.png, zur Zeit ZEIT in Sekunden (sonst 6.3)\n"
           "  --selftest\n"
           "      prüft die Klangformung und den Katalog\n"
           "  --still KENNUNG BREITE HÖHE ZEIT DATEI [FARBWELT]\n"
           "      ein Standbild einer Darstellung als PNG; FARBWELT 0 bis " + lastPalette + " ersetzt\n"
           "      ihre eigene Farbwelt\n"
           "  --bench\n"
           "      GPU-Zeit eines Bildes (1440 × 932) jeder Darstellung in Millisekunden\n"
           "  --icon DATEI\n"
           "      das Programmsymbol (1024 × 1024) als PNG\n"
           "\n"
           "Weitere Optionen:\n"
           "  --autostart   Start bei der Anmeldung: die Galerie bleibt geschlossen\n"
           "  -h, --help    diese Hilfe\n"
           "  --version     die Version\n"
           "\n"
           "Rückgabewert: 0 bei Erfolg, 1 wenn eine Betriebsart scheitert.\n"
           "Einstellungen: ~/.config/Quellton/Quellton.conf\n";
}

std::string version() { return "Quellton " QUELLTON_VERSION; }

std::string ignoredOptionLine(const std::string& option) {
    return "Quellton: Unbekannte Option „" + option + "“ wird ignoriert.";
}

}  // namespace quellton::CommandLineHelp
