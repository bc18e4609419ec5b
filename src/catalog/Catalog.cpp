#include "Catalog.h"

#include <span>

#include "Cell24.h"

namespace quellton {

namespace {

struct Row {
    const char* id;
    const char* name;
    Category category;
    int palette;
    double scale;
    bool feedback;
};

std::vector<Visualizer> build(std::span<const Row> rows) {
    std::vector<Visualizer> list;
    list.reserve(rows.size());
    for (const Row& r : rows)
        list.push_back({r.id, r.name, r.category, r.palette, std::string(shaderBody(r.id)), r.scale, r.feedback});
    return list;
}

}  // namespace

std::vector<Visualizer> catalog2D() {
    static constexpr Row rows[] = {
        {"nation", "Nation", Category::ring, 0, 1.0, false},
        {"halo", "Halo", Category::ring, 5, 1.0, false},
        {"perlen", "Perlenkranz", Category::ring, 2, 1.0, false},
        {"sonar", "Sonar", Category::ring, 2, 1.0, false},
        {"corona", "Korona", Category::ring, 3, 1.0, false},
        {"zwilling", "Zwillingsring", Category::ring, 0, 1.0, false},
        {"neonkreis", "Neonkreis", Category::ring, 9, 1.0, false},
        {"mandala", "Mandala", Category::ring, 6, 1.0, false},
        {"galaxie", "Galaxie", Category::ring, 0, 1.0, false},
        {"portal", "Portal", Category::ring, 5, 1.0, false},
        {"pegel", "Pegelturm", Category::spectrum, 8, 1.0, false},
        {"spiegel", "Spiegel", Category::spectrum, 0, 1.0, false},
        {"skyline", "Skyline", Category::spectrum, 1, 1.0, false},
        {"berge", "Gebirge", Category::spectrum, 1, 1.0, false},
        {"aurora", "Polarlicht", Category::spectrum, 2, 1.0, false},
        {"kurve", "Klangkurve", Category::spectrum, 4, 1.0, false},
        {"pixel", "8-Bit", Category::spectrum, 11, 1.0, false},
        {"matrix", "Punktmatrix", Category::spectrum, 9, 1.0, false},
        {"faecher", "Sonnenfächer", Category::spectrum, 1, 1.0, false},
        {"kapseln", "Kapseln", Category::spectrum, 9, 1.0, false},
        {"oszi", "Oszilloskop", Category::wave, 13, 1.0, false},
        {"seide", "Seide", Category::wave, 9, 1.0, false},
        {"harmonograph", "Harmonograph", Category::wave, 7, 0.75, false},
        {"ozean", "Mondmeer", Category::wave, 4, 1.0, false},
        {"plasma", "Plasma", Category::wave, 5, 1.0, false},
        {"siri", "Stimme", Category::wave, 0, 1.0, false},
        {"nebel", "Nebel", Category::cosmos, 0, 1.0, false},
        {"feuerwerk", "Feuerwerk", Category::cosmos, 11, 1.0, false},
        {"bokeh", "Bokeh", Category::cosmos, 6, 1.0, false},
        {"loch", "Ereignishorizont", Category::cosmos, 3, 1.0, false},
        {"kaleido", "Kaleidoskop", Category::trip, 5, 1.0, false},
        {"lava", "Fluid", Category::trip, 0, 1.0, false},
        {"zellen", "Zellen", Category::trip, 8, 1.0, false},
    };
    return build(rows);
}

std::vector<Visualizer> catalog3D() {
    static constexpr Row rows[] = {
        {"tunnel", "Tunnel", Category::space, 0, 1.0, false},
        {"synthwave", "Synthwave", Category::space, 0, 1.0, false},
        {"nachtfahrt", "Nachtfahrt", Category::space, 0, 1.0, false},
        {"stadt", "Klangstadt", Category::space, 4, 1.0, false},
        {"blob", "Schillerkugel", Category::space, 7, 1.0, false},
        {"wuerfel", "Würfelfeld", Category::space, 2, 1.0, false},
        {"torus", "Drehtorus", Category::space, 6, 1.0, false},
        {"metaballs", "Tropfen", Category::space, 9, 1.0, false},
        {"warp", "Lichtsprung", Category::space, 7, 1.0, false},
        {"kristall", "Kristall", Category::space, 5, 1.0, false},
        {"gyro", "Gyroskop", Category::space, 6, 1.0, false},
        {"fraktaltunnel", "Fraktaltunnel", Category::space, 5, 0.8, false},
        {"mandelbulb", "Mandelbulb", Category::space, 3, 1.0, false},
        {"tesserakt", "Tesserakt", Category::hyper, 2, 1.0, false},
        {"hyperschnitt", "Hyperschnitt", Category::hyper, 0, 1.0, false},
        {"hopf", "Hopf-Torus", Category::hyper, 5, 0.6, false},
        {"24zeller", "24-Zeller", Category::hyper, 6, 0.75, false},
        {"julia4d", "Quaternion-Julia", Category::hyper, 4, 1.0, false},
    };
    auto list = build(rows);
    // The 24-cell's edge table is generated so that it always matches the vertex numbering.
    for (Visualizer& v : list)
        if (v.id == "24zeller") v.code = cell24Edges() + v.code;
    return list;
}

std::vector<Visualizer> catalogFX() {
    static constexpr Row rows[] = {
        {"echo", "Echo", Category::trance, 5, 1.0, true},
        {"pulsar", "Pulsar", Category::trance, 10, 1.0, true},
        {"flammen", "Flammen-EQ", Category::trance, 3, 1.0, true},
        {"tinte", "Tinte", Category::trance, 0, 1.0, true},
        {"sog", "Sog", Category::trance, 0, 1.0, true},
        {"kristallecho", "Kristallecho", Category::trance, 7, 1.0, true},
        {"lichtmaler", "Lichtmaler", Category::trance, 5, 1.0, true},
        {"sternennebel", "Sternennebel", Category::show, 0, 0.75, false},
        {"plasmakugel", "Plasmakugel", Category::show, 0, 1.0, false},
        {"meeresflug", "Meeresflug", Category::show, 1, 0.8, false},
        {"wolkenflug", "Wolkenflug", Category::show, 1, 0.5, false},
        {"gargantua", "Gargantua", Category::show, 3, 0.7, false},
        {"neonroehren", "Neonröhren", Category::show, 5, 1.0, false},
        {"droste", "Droste", Category::trance, 9, 1.0, true},
        {"zeitschlitz", "Zeitschlitz", Category::trance, 0, 1.0, true},
        {"funkenwirbel", "Funkenwirbel", Category::trance, 6, 1.0, true},
        {"schmiere", "Geiss", Category::trance, 11, 1.0, true},
        {"spektrogramm", "Spektrogramm", Category::trance, 3, 1.0, true},
        {"prismaecho", "Prismaecho", Category::trance, 10, 1.0, true},
        {"datamosh", "Datamosh", Category::trance, 5, 1.0, true},
        {"vulkan", "Vulkanflug", Category::show, 3, 0.75, false},
        {"ferrofluid", "Ferrofluid", Category::show, 7, 0.8, false},
        {"quecksilber", "Quecksilber", Category::show, 4, 1.0, false},
        {"stachelkugel", "Stachelkugel", Category::show, 0, 0.8, false},
        {"supernova", "Supernova", Category::show, 3, 0.6, false},
        {"helix", "Doppelhelix", Category::space, 2, 1.0, false},
        {"lichtdom", "Lichtdom", Category::show, 6, 1.0, false},
        {"laser", "Lasershow", Category::show, 8, 1.0, false},
        {"aether", "Äther", Category::show, 5, 0.75, false},
    };
    return build(rows);
}

std::vector<Visualizer> catalogArt() {
    static constexpr Row rows[] = {
        {"schoepfung", "Schöpfung", Category::trip, 0, 1.0, false},
        {"mandelbrot", "Apfelmännchen", Category::trip, 1, 0.8, false},
        {"kaliset", "Filigran", Category::trip, 7, 1.0, false},
        {"chladni", "Klangfiguren", Category::wave, 6, 1.0, false},
        {"truchet", "Geflecht", Category::trip, 5, 1.0, false},
        {"moire", "Moiré", Category::trip, 10, 1.0, false},
        {"hexwelle", "Wabenpuls", Category::spectrum, 4, 1.0, false},
        {"wasserlicht", "Wasserlicht", Category::wave, 4, 1.0, false},
        {"quallen", "Quallen", Category::cosmos, 9, 1.0, false},
        {"coderegen", "Code-Regen", Category::spectrum, 13, 1.0, false},
        {"reaktor", "Reaktor", Category::ring, 4, 1.0, false},
        {"fadenkunst", "Fadenkunst", Category::ring, 6, 0.75, false},
        {"prisma", "Prisma", Category::show, 10, 1.0, false},
        {"anamorph", "Linsenlicht", Category::cosmos, 4, 1.0, false},
        {"regennacht", "Regennacht", Category::show, 5, 1.0, false},
        {"blitze", "Gewitter", Category::show, 7, 0.75, false},
        {"epizykel", "Epizykel", Category::wave, 2, 0.65, false},
    };
    return build(rows);
}

const std::vector<Visualizer>& catalog() {
    static const std::vector<Visualizer> all = [] {
        std::vector<Visualizer> list;
        for (auto part : {catalog2D(), catalog3D(), catalogFX(), catalogArt()})
            list.insert(list.end(), part.begin(), part.end());
        return list;
    }();
    return all;
}

const std::unordered_map<std::string, const Visualizer*>& Catalog::index() {
    static const std::unordered_map<std::string, const Visualizer*> map = [] {
        std::unordered_map<std::string, const Visualizer*> m;
        for (const Visualizer& v : catalog()) m.emplace(v.id, &v);
        return m;
    }();
    return map;
}

const Visualizer* Catalog::byID(std::string_view id) {
    const auto& map = index();
    const auto it = map.find(std::string(id));
    return it == map.end() ? nullptr : it->second;
}

}  // namespace quellton
