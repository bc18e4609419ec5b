// The gallery's lists, counts, titles and card actions over a real model, without a window.
#include <QFile>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include "Catalog.h"
#include "Gallery.h"
#include "ModelTestSupport.h"
#include "QtText.h"
#include "WindowPlacement.h"

namespace quellton::test {
namespace {

class GalleryModels : public ModelTest {
protected:
    std::unique_ptr<AppModel> model = makeModel();
    Gallery gallery{*model};

    std::vector<std::string> cardIDs() {
        std::vector<std::string> ids;
        const CardModel& cards = *gallery.cards();
        for (int row = 0; row < cards.rowCount(); ++row)
            ids.push_back(cards.data(cards.index(row), CardModel::IdRole).toString().toStdString());
        return ids;
    }
    static std::vector<std::string> inCatalogOrder(const std::set<std::string>& ids) {
        std::vector<std::string> ordered;
        for (const Visualizer& v : catalog())
            if (ids.count(v.id)) ordered.push_back(v.id);
        return ordered;
    }
    QVariant sidebar(int row, int role) { return gallery.sidebar()->data(gallery.sidebar()->index(row), role); }
    QVariant card(int row, int role) { return gallery.cards()->data(gallery.cards()->index(row), role); }
};

// The rows' names, order and counts as shown are read through the window by gallery_ui_test.py.
TEST_F(GalleryModels, SidebarRowsCarryASectionAndASymbolThatExistsAndTheMixBadgeFollowsAtOnce) {
    ASSERT_EQ(gallery.sidebar()->rowCount(), 2 + int(allCategories.size()));
    for (int row = 0; row < gallery.sidebar()->rowCount(); ++row) {
        const QString symbol = sidebar(row, SidebarModel::SymbolRole).toString();
        EXPECT_TRUE(QFile::exists(":/quellton/gallery/symbols/" + symbol + ".svg")) << row << symbol.toStdString();
        EXPECT_EQ(sidebar(row, SidebarModel::SectionRole), row < 2 ? "Bibliothek" : "Kategorien");
        if (row >= 2) {
            EXPECT_EQ(symbol, qtText(categorySymbol(allCategories[std::size_t(row - 2)])));
        }
    }

    EXPECT_EQ(sidebar(1, SidebarModel::CountRole).toInt(), 12);
    QSignalSpy changed(gallery.sidebar(), &QAbstractItemModel::dataChanged);
    gallery.toggleMix("tunnel");
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(sidebar(1, SidebarModel::CountRole).toInt(), 13);
}

// The titles as the window shows them are read by gallery_ui_test.py.
TEST_F(GalleryModels, ASelectionFiltersTheCardsAndClosingStartsOverWithEverything) {
    gallery.select(2 + int(Category::hyper));
    EXPECT_EQ(cardIDs().size(), 5u);
    for (const std::string& id : cardIDs()) EXPECT_EQ(Catalog::byID(id)->category, Category::hyper) << id;

    gallery.select(-1);  // nothing selected shows everything
    EXPECT_EQ(gallery.windowTitle(), QString("Alle Darstellungen — %1 Darstellungen").arg(catalog().size()));
    EXPECT_EQ(gallery.cards()->rowCount(), int(catalog().size()));
    gallery.select(1);
    gallery.enterCard("halo");
    gallery.reset();  // the window closed
    EXPECT_EQ(gallery.selectedRow(), 0);
    EXPECT_EQ(model->hoverID(), std::nullopt);
}

TEST_F(GalleryModels, MixCardsKeepCatalogOrderAsTheyComeAndGo) {
    model->setMix({"halo", "nation"});
    gallery.select(1);
    QSignalSpy inserted(gallery.cards(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(gallery.cards(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy subtitle(&gallery, &Gallery::subtitleChanged);
    const std::string added = catalog()[5].id;  // between nation (first) and halo, or after both
    gallery.toggleMix(QString::fromStdString(added));

    const auto order = inCatalogOrder({"halo", "nation", added});
    EXPECT_EQ(cardIDs(), order);
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted[0][1].toInt(), int(std::ranges::find(order, added) - order.begin()));
    EXPECT_EQ(subtitle.count(), 1);

    gallery.toggleMix("nation");
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed[0][1].toInt(), 0);
    EXPECT_EQ(cardIDs(), inCatalogOrder({"halo", added}));

    // A whole new set at once, with an id the catalog does not know.
    model->setMix({"epizykel", "gibtsnicht", catalog()[3].id, catalog()[40].id});
    EXPECT_EQ(cardIDs(), inCatalogOrder({"epizykel", catalog()[3].id, catalog()[40].id}));
}

// Names, the running card's mark, the Mix's plus and minus and the hero's hints show through the window
// (gallery_ui_test.py); here the parts the window cannot tell apart.
TEST_F(GalleryModels, ACardsPictureComesAloneAndANewPictureGetsANewAddress) {
    const int halo = int(std::ranges::find(catalog(), std::string("halo"), &Visualizer::id) - catalog().begin());
    EXPECT_EQ(card(halo, CardModel::ThumbnailRole).toString(), "");
    QSignalSpy changed(gallery.cards(), &QAbstractItemModel::dataChanged);
    QImage picture(48, 27, QImage::Format_RGB32);
    model->setThumbnails({{"halo", picture}});
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), halo);
    const QString url = card(halo, CardModel::ThumbnailRole).toString();
    EXPECT_TRUE(url.startsWith("image://thumbnail/halo/")) << url.toStdString();
    model->setThumbnails({{"halo", picture.copy()}});
    EXPECT_NE(card(halo, CardModel::ThumbnailRole).toString(), url);
}

TEST_F(GalleryModels, HoverIsClearedOnlyByTheCardThatSetItAndDrivesTheHero) {
    HeroModel& hero = *gallery.hero();
    gallery.chooseCard("nation");
    gallery.enterCard("halo");
    gallery.enterCard("echo");  // quick move: the new card's enter before the old card's leave
    gallery.leaveCard("halo");
    EXPECT_EQ(model->hoverIDText(), "echo");
    EXPECT_EQ(hero.shownID(), "echo");
    EXPECT_TRUE(hero.previewing());
    EXPECT_EQ(hero.category(), qtText(categoryTitle(Catalog::byID("echo")->category)).toUpper());
    gallery.leaveCard("echo");
    EXPECT_EQ(model->hoverID(), std::nullopt);
    EXPECT_EQ(hero.shownID(), "nation");

    QSignalSpy switched(&hero, &HeroModel::shownIDChanged);
    gallery.enterCard("nation");  // the running one's own card: the same picture, nothing to animate
    EXPECT_EQ(switched.count(), 0);
    EXPECT_FALSE(hero.previewing());
    gallery.enterCard("gibtsnicht");
    EXPECT_EQ(hero.shownID(), "nation");
    gallery.enterCard("halo");
    EXPECT_EQ(switched.count(), 1);
}

}  // namespace
}  // namespace quellton::test

namespace quellton {
namespace {

// The gallery's place: whole, frame included, inside the work area it opens in, on every screen
// down to 1024 x 600, the remembered place kept where it still fits.
TEST(GalleryPlacement, TheWindowAndItsFrameFitTheWorkArea) {
    const QSize minimum(960, 660), first(1240, 860);
    const QMargins frame(5, 29, 5, 5);
    struct Case {
        QRect area;
        std::optional<QRect> remembered;
    };
    const QRect small(0, 27, 1024, 573), wide(0, 0, 1600, 868);
    for (const Case& c : {Case{small, std::nullopt}, Case{wide, std::nullopt}, Case{wide, QRect(200, 0, 1240, 860)},
                          Case{small, QRect(0, 0, 1240, 860)}, Case{wide, QRect(300, 100, 1000, 700)}}) {
        const Placement p = windowPlacement(c.remembered, {c.area}, c.area, minimum, first, frame);
        EXPECT_TRUE(c.area.contains(p.geometry.marginsAdded(frame))) << c.area.height() << " " << p.geometry.y();
        EXPECT_TRUE(p.geometry.size().width() >= p.minimum.width() && p.geometry.height() >= p.minimum.height());
        EXPECT_EQ(p.minimum, minimum.boundedTo(c.area.size().shrunkBy(frame)));
    }
    // A remembered place that fits stays exactly; one on a screen that is gone starts over, centred.
    EXPECT_EQ(windowPlacement(QRect(300, 100, 1000, 700), {wide}, wide, minimum, first, frame).geometry,
              QRect(300, 100, 1000, 700));
    const QRect centred = windowPlacement(QRect(3000, 100, 1000, 700), {wide}, wide, minimum, first, frame).geometry;
    EXPECT_EQ(centred.marginsAdded(frame).center().x(), wide.center().x());
    EXPECT_EQ(centred.size(), first.boundedTo(wide.size().shrunkBy(frame)));
}

}  // namespace
}  // namespace quellton
