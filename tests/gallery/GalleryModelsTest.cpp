// The gallery's lists, counts, titles and card actions over a real model, without a window.
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <numeric>

#include "Catalog.h"
#include "Gallery.h"
#include "ModelTestSupport.h"

namespace quellton::test {
namespace {

class GalleryModels : public ModelTest {
protected:
    std::unique_ptr<AppModel> model = makeModel();
    Gallery gallery{*model};

    std::vector<std::string> cardIDs() const {
        std::vector<std::string> ids;
        const CardModel& cards = *const_cast<Gallery&>(gallery).cards();
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

TEST_F(GalleryModels, SidebarListsTheLibraryThenEveryCategoryWithItsSymbolAndCount) {
    SidebarModel& rows = *gallery.sidebar();
    ASSERT_EQ(rows.rowCount(), 11);
    EXPECT_EQ(sidebar(0, SidebarModel::TextRole), "Alle");
    EXPECT_EQ(sidebar(0, SidebarModel::SymbolRole), "square.grid.2x2");
    EXPECT_EQ(sidebar(1, SidebarModel::TextRole), "Mein Mix");
    EXPECT_EQ(sidebar(1, SidebarModel::SymbolRole), "shuffle");
    EXPECT_EQ(sidebar(1, SidebarModel::SectionRole), "Bibliothek");
    const QStringList titles = {"Ringe", "Spektrum", "Wellen", "3D", "4D", "Kosmos", "Psychedelisch", "Trance", "Spektakel"};
    const QStringList symbols = {"circle.circle", "chart.bar.fill", "waveform.path", "cube.transparent", "rotate.3d",
                                 "sparkles", "camera.filters", "tornado", "flame.fill"};
    int sum = 0;
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(sidebar(2 + i, SidebarModel::TextRole), titles[i]);
        EXPECT_EQ(sidebar(2 + i, SidebarModel::SymbolRole), symbols[i]);
        EXPECT_EQ(sidebar(2 + i, SidebarModel::SectionRole), "Kategorien");
        sum += sidebar(2 + i, SidebarModel::CountRole).toInt();
    }
    EXPECT_EQ(sidebar(0, SidebarModel::CountRole).toInt(), int(catalog().size()));
    EXPECT_EQ(sum, int(catalog().size()));
    EXPECT_EQ(sidebar(1, SidebarModel::CountRole).toInt(), 12);
}

TEST_F(GalleryModels, TheMixBadgeFollowsTheMixAtOnce) {
    QSignalSpy changed(gallery.sidebar(), &QAbstractItemModel::dataChanged);
    gallery.toggleMix("tunnel");
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(sidebar(1, SidebarModel::CountRole).toInt(), 13);
    model->setMix({});
    EXPECT_EQ(sidebar(1, SidebarModel::CountRole).toInt(), 0);
}

TEST_F(GalleryModels, TitlesAndSubtitlesFollowTheSelection) {
    EXPECT_EQ(gallery.title(), "Alle Darstellungen");
    EXPECT_EQ(gallery.subtitle(), QString("%1 Darstellungen").arg(catalog().size()));
    EXPECT_EQ(gallery.windowTitle(), QString("Alle Darstellungen — %1 Darstellungen").arg(catalog().size()));

    QSignalSpy titles(&gallery, &Gallery::windowTitleChanged);
    gallery.select(2 + int(Category::hyper));
    EXPECT_EQ(gallery.title(), "4D");
    EXPECT_EQ(gallery.subtitle(), "5 Darstellungen");
    EXPECT_GE(titles.count(), 1);
    for (const std::string& id : cardIDs()) EXPECT_EQ(Catalog::byID(id)->category, Category::hyper) << id;

    model->setMix({"halo"});
    gallery.select(1);
    EXPECT_EQ(gallery.windowTitle(), "Mein Mix — 1 Darstellung");
    model->setMix({});
    EXPECT_EQ(gallery.subtitle(), "0 Darstellungen");
    EXPECT_EQ(gallery.cards()->rowCount(), 0);

    gallery.select(-1);  // nothing selected shows everything
    EXPECT_EQ(gallery.title(), "Alle Darstellungen");
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

    std::set<std::string> mix = {"halo", "nation", added};
    EXPECT_EQ(cardIDs(), inCatalogOrder(mix));
    ASSERT_EQ(inserted.count(), 1);
    const auto order = inCatalogOrder(mix);
    EXPECT_EQ(inserted[0][1].toInt(), int(std::find(order.begin(), order.end(), added) - order.begin()));
    EXPECT_EQ(subtitle.count(), 1);

    gallery.toggleMix("nation");
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed[0][1].toInt(), 0);
    mix.erase("nation");
    EXPECT_EQ(cardIDs(), inCatalogOrder(mix));

    // A whole new set at once, with an id the catalog does not know.
    model->setMix({"epizykel", "gibtsnicht", catalog()[3].id, catalog()[40].id});
    EXPECT_EQ(cardIDs(), inCatalogOrder({"epizykel", catalog()[3].id, catalog()[40].id}));
}

TEST_F(GalleryModels, CardsShowCurrentMixAndPictureStateLive) {
    const int halo = int(std::ranges::find(catalog(), std::string("halo"), &Visualizer::id) - catalog().begin());
    EXPECT_EQ(card(halo, CardModel::NameRole), QString::fromStdString(Catalog::byID("halo")->name));
    EXPECT_FALSE(card(halo, CardModel::CurrentRole).toBool());
    gallery.chooseCard("halo");
    EXPECT_EQ(model->currentID(), "halo");
    EXPECT_TRUE(card(halo, CardModel::CurrentRole).toBool());
    EXPECT_TRUE(card(halo, CardModel::InMixRole).toBool());
    gallery.toggleMix("halo");
    EXPECT_FALSE(card(halo, CardModel::InMixRole).toBool());

    EXPECT_EQ(card(halo, CardModel::ThumbnailRole).toString(), "");
    QSignalSpy changed(gallery.cards(), &QAbstractItemModel::dataChanged);
    QImage picture(48, 27, QImage::Format_RGB32);
    model->setThumbnails({{"halo", picture}});
    ASSERT_EQ(changed.count(), 1);  // only the card whose picture came
    EXPECT_EQ(changed[0][0].toModelIndex().row(), halo);
    const QString url = card(halo, CardModel::ThumbnailRole).toString();
    EXPECT_TRUE(url.startsWith("image://thumbnail/halo/")) << url.toStdString();
    model->setThumbnails({{"halo", picture.copy()}});  // a new picture gets a new address
    EXPECT_NE(card(halo, CardModel::ThumbnailRole).toString(), url);
}

TEST_F(GalleryModels, HoverIsClearedOnlyByTheCardThatSetItAndDrivesTheHero) {
    HeroModel& hero = *gallery.hero();
    gallery.chooseCard("nation");
    EXPECT_EQ(hero.name(), QString::fromStdString(Catalog::byID("nation")->name));
    EXPECT_EQ(hero.hint(), "Läuft als Hintergrund · klick hinein für eine Welle");

    gallery.enterCard("halo");
    gallery.enterCard("echo");  // quick move: the new card's enter before the old card's leave
    gallery.leaveCard("halo");
    EXPECT_EQ(model->hoverIDText(), "echo");
    EXPECT_EQ(hero.shownID(), "echo");
    EXPECT_TRUE(hero.previewing());
    EXPECT_EQ(hero.hint(), "Klicken, um es als Hintergrund zu setzen");
    EXPECT_EQ(hero.category(), QString::fromUtf8(categoryTitle(Catalog::byID("echo")->category).data()).toUpper());
    gallery.leaveCard("echo");
    EXPECT_EQ(model->hoverID(), std::nullopt);
    EXPECT_EQ(hero.shownID(), "nation");

    QSignalSpy switched(&hero, &HeroModel::shownIDChanged);
    gallery.enterCard("nation");  // the running one's own card: the same picture, nothing to animate
    EXPECT_EQ(switched.count(), 0);
    EXPECT_FALSE(hero.previewing());
    EXPECT_EQ(hero.hint(), "Läuft als Hintergrund · klick hinein für eine Welle");
    gallery.enterCard("gibtsnicht");
    EXPECT_EQ(hero.shownID(), "nation");
    gallery.enterCard("halo");
    EXPECT_EQ(switched.count(), 1);
}

}  // namespace
}  // namespace quellton::test
