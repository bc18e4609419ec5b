vec3 vis(vec2 p, vec2 uv) {
    vec2 q = p * 1.6 + MOUSE * 0.3;
    // three expanding rings bend the floor before the caustic net is traced
    for (int i = 0; i < 3; ++i) {
        float t = TIME * 0.3 + float(i) / 3.0;
        vec2 o = (h22(vec2(floor(t), float(i) * 3.3)) - 0.5) * vec2(ASPECT * 2.4, 2.4);
        vec2 d = q - o;
        float r = length(d) + 1e-3;
        float rad = fract(t) * 3.0;
        q += d / r * sin((r - rad) * 14.0) * exp(-pow((r - rad) * 3.0, 2.0)) * (1.0 - fract(t)) * (0.05 + BASS * 0.12);
    }
    vec2 w = q * 3.0 - 250.0;
    vec2 i2 = w;
    float c = 1.0;
    const float inten = 0.005;
    float t = MT * 0.25;
    for (int n = 0; n < 5; ++n) {
        float tt = t * (1.0 - 3.5 / float(n + 1));
        i2 = w + vec2(cos(tt - i2.x) + sin(tt + i2.y), sin(tt - i2.y) + cos(tt + i2.x));
        c += 1.0 / length(vec2(w.x / (sin(i2.x + tt) / inten), w.y / (cos(i2.y + tt) / inten)));
    }
    c /= 5.0;
    c = 1.17 - pow(c, 1.4);
    float caus = pow(abs(c), 10.0) * 1.2;
    vec3 col = mix(PAL(0.75) * 0.1, PAL(0.0) * 0.25, uv.y);
    col += PAL(0.6) * caus * (0.45 + HIGH * 0.9);
    col += vec3(0.9, 1.0, 1.0) * pow(caus, 3.0) * (0.2 + HIGH * 0.5);
    return tm(col * 1.2);
}
