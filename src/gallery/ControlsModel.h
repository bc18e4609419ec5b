#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace quellton {

class AppModel;

// What the toolbar's popovers show and do beyond a plain binding to one model property: the preset
// that a strength is nearest to, the choice lists with their values, the Mix's count, the palettes,
// and the way to the desktop's sound settings. Every value follows the model at once.
class ControlsModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList presets READ presets CONSTANT)
    Q_PROPERTY(int preset READ preset WRITE choosePreset NOTIFY presetChanged)
    Q_PROPERTY(QVariantList intervals READ intervals CONSTANT)
    Q_PROPERTY(int interval READ interval WRITE chooseInterval NOTIFY intervalChanged)
    Q_PROPERTY(QString selectedCount READ selectedCount NOTIFY selectedCountChanged)
    Q_PROPERTY(QVariantList palettes READ palettes CONSTANT)
    Q_PROPERTY(QStringList qualities READ qualities CONSTANT)
    Q_PROPERTY(QVariantList frameRates READ frameRates CONSTANT)
    Q_PROPERTY(int frameRate READ frameRate WRITE chooseFrameRate NOTIFY frameRateChanged)
    Q_PROPERTY(bool canOpenSoundSettings READ canOpenSoundSettings CONSTANT)

public:
    explicit ControlsModel(AppModel& model, QObject* parent = nullptr);

    // "Ruhig", "Normal", "Stark", "Extrem"; `preset` is the row nearest to the model's strength, and
    // choosing a row sets the strength to that preset's exactly.
    static QStringList presets();
    int preset() const;
    void choosePreset(int row);

    // {text, seconds} of "Wechseln alle"; `interval` is the row of the model's interval, -1 for
    // another value.
    static QVariantList intervals();
    int interval() const;
    void chooseInterval(int row);

    // "Ausgewählt": "N von 97".
    QString selectedCount() const;
    // Every visualization, or none, into the Mix.
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void selectNone();

    // {id, name, colors} of every palette, in table order.
    static QVariantList palettes();

    static QStringList qualities();
    // {text, fps} of "Bildrate"; `frameRate` as `interval`.
    static QVariantList frameRates();
    int frameRate() const;
    void chooseFrameRate(int row);

    bool canOpenSoundSettings() const { return canOpenSoundSettings_; }
    Q_INVOKABLE void openSoundSettings();

signals:
    void presetChanged();
    void intervalChanged();
    void selectedCountChanged();
    void frameRateChanged();

private:
    AppModel& model_;
    bool canOpenSoundSettings_;
};

}  // namespace quellton
