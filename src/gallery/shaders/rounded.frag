#version 440
layout(location = 0) in vec2 texCoord;
layout(location = 1) in vec2 point;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float radius;
    vec2 boxSize;  // the item in pixels
};
layout(binding = 1) uniform sampler2D source;

// Signed distance to the rounded rectangle's edge, negative inside.
float roundedBox(vec2 p, vec2 halfSize, float r) {
    vec2 q = abs(p) - halfSize + r;
    return length(max(q, 0.0)) + min(max(q.x, q.y), 0.0) - r;
}

void main() {
    vec2 halfSize = boxSize * 0.5;
    float d = roundedBox(point - halfSize, halfSize, min(radius, min(halfSize.x, halfSize.y)));
    float coverage = clamp(0.5 - d, 0.0, 1.0);
    fragColor = texture(source, texCoord) * coverage * qt_Opacity;
}
