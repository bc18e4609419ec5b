#include "ShaderSource.h"

namespace quellton::ShaderSource {

const std::string_view vertex = R"(#version 330 core
void main() {
    vec2 p = vec2(float((gl_VertexID << 1) & 2), float(gl_VertexID & 2));
    gl_Position = vec4(p * 2.0 - 1.0, 0.0, 1.0);
}
)";

const std::string_view prelude = R"(#version 330 core

layout(std140) uniform U {
    vec4 rt;     // Aufloesung xy, Zeit, Ueberblendung
    vec4 mouse;  // Maus xy, letzter Klick xy (beides in p-Koordinaten)
    vec4 audio;  // Bass, Mitten, Hoehen, Pegel
    vec4 extra;  // Schlag, Klick-Alter, Seitenverhaeltnis, Musikzeit
    vec4 pa, pb, pc, pd;  // Farbwelt
} u;

// 64 spectrum bands, 256 waveform samples, 64 peaks.
layout(std140) uniform Spectrum { vec4 S[96]; };

out vec4 fragColor;

#define RES u.rt.xy
#define TIME u.rt.z
#define MT u.extra.w
#define BASS u.audio.x
#define MID u.audio.y
#define HIGH u.audio.z
#define LVL u.audio.w
#define BEAT u.extra.x
#define MOUSE u.mouse.xy
#define ASPECT u.extra.z
#define PI 3.14159265
#define TAU 6.28318531
#define SP(x) spec((x))
#define PK(x) peak((x))
#define WV(x) wave((x))
#define PAL(t) pal((t))

float s384(int i) { return S[i >> 2][i & 3]; }

float spec(float x) {
    float xi = clamp(x, 0.0, 1.0) * 63.0;
    int i = clamp(int(xi), 0, 63);
    return mix(s384(i), s384(min(i + 1, 63)), fract(xi));
}

float wave(float x) {
    float xi = fract(x) * 255.0;
    int i = clamp(int(xi), 0, 255);
    return mix(s384(64 + i), s384(64 + min(i + 1, 255)), fract(xi));
}

float peak(float x) {
    float xi = clamp(x, 0.0, 1.0) * 63.0;
    int i = clamp(int(xi), 0, 63);
    return mix(s384(320 + i), s384(320 + min(i + 1, 63)), fract(xi));
}

// The palette as a closed loop of four colours with smoothstep easing between neighbours.
vec3 pal(float t) {
    float tt = fract(t) * 4.0;
    float f = fract(tt);
    f = f * f * (3.0 - 2.0 * f);
    int i = int(tt);
    vec3 a = i == 0 ? u.pa.xyz : i == 1 ? u.pb.xyz : i == 2 ? u.pc.xyz : u.pd.xyz;
    vec3 b = i == 0 ? u.pb.xyz : i == 1 ? u.pc.xyz : i == 2 ? u.pd.xyz : u.pa.xyz;
    return mix(a, b, f);
}

mat2 rot(float a) {
    float c = cos(a), s = sin(a);
    return mat2(c, s, -s, c);
}

float mod1(float x, float y) { return x - y * floor(x / y); }
vec2 mod2(vec2 x, vec2 y) { return x - y * floor(x / y); }
vec2 mod2(vec2 x, float y) { return x - y * floor(x / y); }
vec3 mod3(vec3 x, vec3 y) { return x - y * floor(x / y); }
vec3 mod3(vec3 x, float y) { return x - y * floor(x / y); }

float h11(float n) { return fract(sin(n * 127.1) * 43758.5453); }

float h21(vec2 p) {
    p = fract(p * vec2(123.34, 456.21));
    p += dot(p, p + 45.32);
    return fract(p.x * p.y);
}

vec2 h22(vec2 p) {
    float n = h21(p);
    return vec2(n, h21(p + n));
}

float h31(vec3 p) {
    p = fract(p * 0.3183099 + 0.1);
    p *= 17.0;
    return fract(p.x * p.y * p.z * (p.x + p.y + p.z));
}

float noise(vec2 p) {
    vec2 i = floor(p), f = fract(p), w = f * f * (3.0 - 2.0 * f);
    return mix(mix(h21(i), h21(i + vec2(1.0, 0.0)), w.x), mix(h21(i + vec2(0.0, 1.0)), h21(i + vec2(1.0, 1.0)), w.x), w.y);
}

float fbm(vec2 p) {
    float v = 0.0, a = 0.5;
    for (int i = 0; i < 5; ++i) {
        v += a * noise(p);
        p = rot(0.6) * p * 2.03 + 3.1;
        a *= 0.5;
    }
    return v;
}

float noise3(vec3 x) {
    vec3 i = floor(x), f = fract(x), w = f * f * (3.0 - 2.0 * f);
    float a = mix(h31(i), h31(i + vec3(1, 0, 0)), w.x);
    float b = mix(h31(i + vec3(0, 1, 0)), h31(i + vec3(1, 1, 0)), w.x);
    float c = mix(h31(i + vec3(0, 0, 1)), h31(i + vec3(1, 0, 1)), w.x);
    float d = mix(h31(i + vec3(0, 1, 1)), h31(i + vec3(1, 1, 1)), w.x);
    return mix(mix(a, b, w.y), mix(c, d, w.y), w.z);
}

float sdSeg(vec2 p, vec2 a, vec2 b) {
    vec2 pa = p - a, ba = b - a;
    float h = clamp(dot(pa, ba) / dot(ba, ba), 0.0, 1.0);
    return length(pa - ba * h);
}

float smin(float a, float b, float k) {
    float h = clamp(0.5 + 0.5 * (b - a) / k, 0.0, 1.0);
    return mix(b, a, h) - k * h * (1.0 - h);
}

float sdBox(vec3 p, vec3 b) {
    vec3 q = abs(p) - b;
    return length(max(q, 0.0)) + min(max(q.x, max(q.y, q.z)), 0.0);
}

vec3 hsv(float h, float s, float v) {
    vec3 k = clamp(abs(fract(h + vec3(0.0, 2.0, 1.0) / 3.0) * 6.0 - 3.0) - 1.0, 0.0, 1.0);
    return v * mix(vec3(1.0), k, s);
}

vec3 tm(vec3 c) { return 1.0 - exp(-max(c, 0.0)); }

// Kamera: Strahl durch Pixel p von ro nach ta, Brennweite fl.
vec3 rayDir(vec2 p, vec3 ro, vec3 ta, float fl) {
    vec3 f = normalize(ta - ro);
    vec3 r = normalize(cross(vec3(0.0, 1.0, 0.0), f));
    vec3 up = cross(f, r);
    return normalize(p.x * r + p.y * up + fl * f);
}

// Sterne, die aus der Mitte auf den Betrachter zufliegen.
float starfield(vec2 p, float t) {
    float b = 0.0;
    for (int i = 0; i < 3; ++i) {
        float z = fract(t + float(i) / 3.0);
        vec2 g = p * mix(14.0, 0.8, z) + float(i) * 17.3;
        vec2 id = floor(g), f = fract(g) - 0.5;
        vec2 o = h22(id) - 0.5;
        float d = length(f - o * 0.8);
        float s = h21(id + 3.7);
        b += step(0.75, s) * smoothstep(0.08, 0.0, d) * smoothstep(0.0, 0.4, z) * smoothstep(1.0, 0.8, z);
    }
    return b;
}

// Spektrum nach Winkel um eine Mitte, links/rechts gespiegelt (Bass oben, Hoehen unten).
float ringSpec(vec2 q, float span) { return spec(abs(atan(q.x, q.y)) / PI * span); }

// Voriges Bild (nur in Feedback-Darstellungen): PREV(uv) mit uv 0...1 (y nach oben), PREVP(p) mit p-Koordinaten.
#define PREV(q) texture(prev, (q)).rgb
#define PREVP(q) PREV(p2uv((q), ASPECT))

vec2 p2uv(vec2 p, float aspect) { return vec2(p.x / aspect * 0.5 + 0.5, p.y * 0.5 + 0.5); })";

namespace {

// Pixel, uv and p-coordinates, with the click ripple bending p radially.
constexpr std::string_view coordinates = R"(
    vec2 res = u.rt.xy;
    vec2 uv = gl_FragCoord.xy / res;
    vec2 p = (gl_FragCoord.xy * 2.0 - res) / res.y;
    float age = u.extra.y;
    if (age < 2.5) {
        vec2 d = p - u.mouse.zw;
        float r = length(d) + 1e-4;
        float w = age * 1.4;
        float k = exp(-age * 2.0) * smoothstep(0.3, 0.0, abs(r - w));
        p += d / r * k * 0.05 * sin((r - w) * 28.0);
    }
)";

constexpr std::string_view vignetteAndDither = R"(
    vec2 v = uv - 0.5;
    c *= 1.0 - dot(v, v) * 0.55;
    c = clamp(c, 0.0, 1.0) + (h21(gl_FragCoord.xy + fract(u.rt.z) * 61.0) - 0.5) / 255.0;
    fragColor = vec4(c, u.rt.w);
}
)";

std::string join(std::initializer_list<std::string_view> parts) {
    std::string s;
    for (auto part : parts) s += part;
    return s;
}

}  // namespace

const std::string fragmentPlain =
    join({"\nvoid main() {", coordinates, "    vec3 c = vis(p, uv);", vignetteAndDither});

const std::string fragmentFeedback = join({"\nuniform sampler2D previousFrame;\nvoid main() {", coordinates,
                                           "    fragColor = vec4(clamp(vis(p, uv, previousFrame), 0.0, 8.0), 1.0);\n}\n"});

const std::string& presentSource() {
    static const std::string source =
        join({prelude, "\nuniform sampler2D img;\nvoid main() {\n    vec2 uv = gl_FragCoord.xy / u.rt.xy;\n",
              "    vec3 c = texture(img, uv).rgb;", vignetteAndDither});
    return source;
}

std::string assemble(const Visualizer& v) {
    return join({prelude, v.code, v.feedback ? std::string_view(fragmentFeedback) : std::string_view(fragmentPlain)});
}

}  // namespace quellton::ShaderSource
