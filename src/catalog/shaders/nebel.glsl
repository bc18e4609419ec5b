vec3 vis(vec2 p, vec2 uv) {
    vec2 q = p * 0.9 + MOUSE * 0.25;
    float t = MT * 0.05;
    vec2 w = vec2(fbm(q * 1.3 + vec2(t, -t * 0.7)), fbm(q * 1.3 + vec2(5.2, 1.3) - t * 0.8));
    vec2 w2 = vec2(fbm(q * 1.7 + w * 2.2 + vec2(1.7, 9.2) + t), fbm(q * 1.7 + w * 2.2 + vec2(8.3, 2.8)));
    float n = fbm(q + w2 * 1.8 - t * 0.5);
    float dens = smoothstep(0.22, 0.78, n);
    vec3 col = mix(PAL(w.x * 0.8 + 0.6), PAL(w2.y * 1.2 + n), 0.5) * dens * dens * (0.7 + 1.2 * BASS);
    col += mix(PAL(0.1 + w2.x * 0.6), vec3(1.0), 0.3) * pow(dens, 4.0) * 0.8 * (0.6 + BASS);
    col += PAL(0.6 + w.y) * 0.06 * (1.0 - dens);
    col *= 0.45 + 0.8 * smoothstep(0.15, 0.85, fbm(q * 3.0 - w));
    for (int i = 0; i < 2; ++i) {
        float sc = 28.0 + float(i) * 22.0;
        vec2 g = (p + MOUSE * (0.03 + float(i) * 0.03)) * sc;
        vec2 id = floor(g), f = fract(g) - 0.5;
        float h = h21(id + float(i) * 7.7);
        vec2 o = h22(id + 1.3) - 0.5;
        float d = length(f - o * 0.7);
        float tw = 0.55 + 0.45 * sin(TIME * (1.5 + h * 4.0) + h * 60.0);
        col += mix(vec3(1.0), PAL(h), 0.3) * step(0.88, h) * tw * (0.4 + 1.6 * HIGH) * (0.03 / (d + 0.03) * smoothstep(0.45, 0.0, d) * 0.5 + smoothstep(0.06, 0.0, d));
    }
    return tm(col * 1.2);
}
