#include "TrayMenu.h"

#include <QActionGroup>
#include <QCoreApplication>

#include "AppModel.h"
#include "QuitKey.h"
#include "ReactionPreset.h"
#include "ShellHandOver.h"

namespace quellton {

namespace {

QString text(std::string_view utf8) { return QString::fromUtf8(utf8.data(), qsizetype(utf8.size())); }

}  // namespace

TrayMenu::TrayMenu(AppModel& model, std::function<void()> openGallery, QWidget* parent)
    : QMenu(parent), model(model) {
    current = addAction(QString());
    current->setEnabled(false);
    addAction(QStringLiteral("Nächste Darstellung"), &model, &AppModel::next);
    addAction(QStringLiteral("Vorherige Darstellung"), &model, &AppModel::previous);
    addAction(QStringLiteral("Zufällige Darstellung"), &model, &AppModel::random);
    addSeparator();

    QMenu* reaction = addMenu(QStringLiteral("Reaktion"));
    auto* group = new QActionGroup(reaction);
    for (ReactionPreset preset : allReactionPresets) {
        QAction* option = reaction->addAction(text(presetLabel(preset)));
        option->setCheckable(true);
        group->addAction(option);
        connect(option, &QAction::triggered, &model, [&model, preset] { model.setReactivity(presetStrength(preset)); });
        reactions[std::size_t(preset)] = option;
    }

    mix = addAction(QStringLiteral("Mix abspielen"));
    mix->setCheckable(true);
    connect(mix, &QAction::triggered, &model, &AppModel::setMixEnabled);
    pause = addAction(QStringLiteral("Pausieren"));
    pause->setCheckable(true);
    connect(pause, &QAction::triggered, &model, &AppModel::setPaused);
    addSeparator();

    addAction(QStringLiteral("Galerie öffnen …"), this, std::move(openGallery));
    if (ShellHandOver::offersExtensionSwitch())
        addAction(QStringLiteral("Bild hinter den Symbolen einschalten (GNOME-Erweiterung)"), this,
                  &ShellHandOver::switchExtensionOn);
    addSeparator();

    QAction* quit = addAction(QStringLiteral("Quellton beenden"), qApp, &QCoreApplication::quit);
    quit->setShortcut(quitKey);

    // Setting a checked state does not emit `triggered`, so the two directions cannot loop.
    connect(&model, &AppModel::currentIDChanged, this, &TrayMenu::showCurrent);
    connect(&model, &AppModel::reactivityChanged, this, &TrayMenu::showReaction);
    connect(&model, &AppModel::mixEnabledChanged, mix, [this] { mix->setChecked(this->model.mixEnabled()); });
    connect(&model, &AppModel::pausedChanged, pause, [this] { pause->setChecked(this->model.paused()); });
    showCurrent();
    showReaction();
    mix->setChecked(model.mixEnabled());
    pause->setChecked(model.paused());
}

// An ampersand in a name would otherwise mark a mnemonic and vanish.
void TrayMenu::showCurrent() { current->setText(text(model.current().name).replace(u'&', QStringLiteral("&&"))); }

void TrayMenu::showReaction() { reactions[std::size_t(nearestPreset(model.reactivity()))]->setChecked(true); }

}  // namespace quellton
