vec3 vis(vec2 p, vec2 uv) {
    const float scale = 5.0;
    vec2 g = p * scale;
    const vec2 r = vec2(1.0, 1.7320508);
    vec2 a = mod2(g, r) - r * 0.5;
    vec2 b = mod2(g - r * 0.5, r) - r * 0.5;
    vec2 h = dot(a, a) < dot(b, b) ? a : b;
    vec2 id = g - h;
    vec2 ah = abs(h);
    // distance to the hexagon's rim, 0 at the edge, 0.5 at the centre
    float e = 0.5 - max(dot(ah, vec2(0.5, 0.8660254)), ah.x);
    float cell = h21(floor(id * 2.0 + 0.5) + 0.7);
    float s = SP(cell * 0.85);
    vec2 c = id / scale;
    float wave = 0.0;
    for (int i = 0; i < 3; ++i) {
        float t = TIME * 0.3 + float(i) / 3.0;
        vec2 o = (h22(vec2(floor(t), float(i) * 7.1)) - 0.5) * vec2(ASPECT * 1.6, 1.6);
        float rad = fract(t) * 2.8;
        float x = (length(c - o) - rad) * 7.0;
        wave += exp(-x * x) * (1.0 - fract(t));
    }
    float gap = smoothstep(0.03, 0.05, e);
    float rim = 1.0 - smoothstep(0.05, 0.14, e);
    float lit = dot(normalize(h + 1e-4), vec2(-0.5, 0.8660254));
    vec3 base = PAL(cell * 0.45 + c.x * 0.08 + TIME * 0.02);
    vec3 col = base * (0.04 + s * s * 0.6) * gap;
    col += mix(base, vec3(1.0), 0.4) * rim * gap * max(lit, 0.0) * (0.12 + s * 0.5);
    col *= 1.0 - rim * gap * max(-lit, 0.0) * 0.6;
    col += PAL(0.55) * wave * (0.2 + BASS * 0.6) * (0.2 + 0.8 * gap) * (0.6 + rim);
    return tm(col * 1.3);
}
