#include "RoundedTextureMaterial.h"

#include <cstring>

namespace quellton {

namespace {

// The uniform block of shaders/rounded.vert, in std140 layout.
struct Uniforms {
    float matrix[16];
    float opacity;
    float radius;
    float size[2];
};

class RoundedTextureShader : public QSGMaterialShader {
public:
    RoundedTextureShader() {
        setShaderFileName(VertexStage, QStringLiteral(":/quellton/gallery/shaders/rounded.vert.qsb"));
        setShaderFileName(FragmentStage, QStringLiteral(":/quellton/gallery/shaders/rounded.frag.qsb"));
    }

    bool updateUniformData(RenderState& state, QSGMaterial* newMaterial, QSGMaterial*) override {
        const auto* material = static_cast<RoundedTextureMaterial*>(newMaterial);
        Uniforms u{};
        std::memcpy(u.matrix, state.combinedMatrix().constData(), sizeof u.matrix);
        u.opacity = state.opacity();
        u.radius = material->radius;
        u.size[0] = float(material->size.width());
        u.size[1] = float(material->size.height());
        QByteArray* buffer = state.uniformData();
        if (buffer->size() < qsizetype(sizeof u)) return false;
        std::memcpy(buffer->data(), &u, sizeof u);
        return true;
    }

    void updateSampledImage(RenderState& state, int binding, QSGTexture** texture, QSGMaterial* newMaterial,
                            QSGMaterial*) override {
        if (binding != 1) return;
        auto* material = static_cast<RoundedTextureMaterial*>(newMaterial);
        if (material->texture) material->texture->commitTextureOperations(state.rhi(), state.resourceUpdateBatch());
        *texture = material->texture;
    }
};

}  // namespace

RoundedTextureMaterial::RoundedTextureMaterial() { setFlag(Blending); }

QSGMaterialType* RoundedTextureMaterial::type() const {
    static QSGMaterialType type;
    return &type;
}

QSGMaterialShader* RoundedTextureMaterial::createShader(QSGRendererInterface::RenderMode) const {
    return new RoundedTextureShader;
}

int RoundedTextureMaterial::compare(const QSGMaterial* other) const {
    const auto* o = static_cast<const RoundedTextureMaterial*>(other);
    if (texture != o->texture) return texture < o->texture ? -1 : 1;
    if (radius != o->radius) return radius < o->radius ? -1 : 1;
    return 0;
}

}  // namespace quellton
