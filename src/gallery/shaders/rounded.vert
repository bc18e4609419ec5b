#version 440
// A picture clipped to a rounded rectangle with anti-aliased corners: card thumbnails (as a
// ShaderEffect) and the hero's live preview (as the preview item's material).
layout(location = 0) in vec4 qt_Vertex;
layout(location = 1) in vec2 qt_MultiTexCoord0;
layout(location = 0) out vec2 texCoord;
layout(location = 1) out vec2 point;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float radius;
    vec2 boxSize;  // the item in pixels
};

void main() {
    texCoord = qt_MultiTexCoord0;
    point = qt_MultiTexCoord0 * boxSize;
    gl_Position = qt_Matrix * qt_Vertex;
}
