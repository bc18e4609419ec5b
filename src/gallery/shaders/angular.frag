#version 440
// The "Original" swatch: a capsule filled with a colour wheel around its centre, starting at the
// right and turning clockwise through pink, orange, yellow, green, cyan and purple back to pink.
layout(location = 0) in vec2 texCoord;
layout(location = 1) in vec2 point;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float radius;
    vec2 boxSize;  // the item in pixels
};

const vec3 stops[7] = vec3[7](vec3(1.0, 0.176, 0.333), vec3(1.0, 0.584, 0.0), vec3(1.0, 0.8, 0.0),
                              vec3(0.204, 0.78, 0.349), vec3(0.196, 0.678, 0.902), vec3(0.686, 0.322, 0.871),
                              vec3(1.0, 0.176, 0.333));

float roundedBox(vec2 p, vec2 halfSize, float r) {
    vec2 q = abs(p) - halfSize + r;
    return length(max(q, 0.0)) + min(max(q.x, q.y), 0.0) - r;
}

void main() {
    vec2 halfSize = boxSize * 0.5;
    vec2 p = point - halfSize;  // y grows downwards, so the angle grows clockwise on screen
    float turn = fract(atan(p.y, p.x) / 6.28318530718 + 1.0) * 6.0;
    int i = int(floor(turn));
    vec3 colour = mix(stops[i], stops[min(i + 1, 6)], turn - float(i));
    float d = roundedBox(p, halfSize, min(radius, min(halfSize.x, halfSize.y)));
    float coverage = clamp(0.5 - d, 0.0, 1.0);
    fragColor = vec4(colour, 1.0) * coverage * qt_Opacity;
}
