#pragma once

#include <QColor>
#include <QSGMaterial>
#include <QSGMaterialShader>
#include <QSGTexture>
#include <QSizeF>

namespace quellton {

// A texture clipped to a rounded rectangle with anti-aliased corners (the same shaders as the
// cards' RoundedImage effect). It does not own its texture.
class RoundedTextureMaterial : public QSGMaterial {
public:
    RoundedTextureMaterial();

    QSGMaterialType* type() const override;
    QSGMaterialShader* createShader(QSGRendererInterface::RenderMode mode) const override;
    int compare(const QSGMaterial* other) const override;

    QSGTexture* texture = nullptr;
    float radius = 0;
    QSizeF size;
};

}  // namespace quellton
