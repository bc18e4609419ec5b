vec3 vis(vec2 p, vec2 uv) {
    vec2 L = vec2(ASPECT * 0.5 * sin(MT * 0.13), 0.45 * sin(MT * 0.09 + 1.3)) + MOUSE * 0.6;
    vec2 d = p - L;
    float r = length(d);
    float flare = 0.5 + BEAT * 1.3;
    vec3 col = PAL(0.75) * 0.02;
    // core and halo
    col += vec3(1.0) * 0.02 / (r * r + 0.002) * 0.06 * flare;
    col += PAL(0.2) * exp(-r * 5.0) * 0.35 * flare;
    // long horizontal streaks, longer with bass
    float len = 0.45 + BASS * 2.2;
    float streak = exp(-abs(d.y) * 260.0) * exp(-abs(d.x) / len);
    col += mix(PAL(0.1), vec3(0.7, 0.9, 1.0), 0.3) * streak * (1.0 + BASS) * flare;
    col += PAL(0.0) * exp(-abs(d.y) * 40.0) * exp(-abs(d.x) / (len * 0.5)) * 0.2 * flare;
    // six hexagonal ghosts on the line through the centre
    for (int i = 0; i < 6; ++i) {
        float fi = float(i);
        float t = 0.55 - fi * 0.48 + 0.12 * sin(fi * 3.1);
        vec2 c = L * t;
        float size = 0.05 + 0.09 * h11(fi + 4.0);
        vec2 g = abs(p - c);
        float hex = max(dot(g, vec2(0.5, 0.8660254)), g.x) - size;
        float fill = smoothstep(0.01, -0.01, hex);
        vec3 gc = PAL(0.15 + fi * 0.13);
        col += gc * (fill * 0.1 + smoothstep(0.012, 0.0, abs(hex)) * 0.1) * flare;
    }
    // a ring ghost around the light
    col += PAL(0.3) * 0.05 * exp(-abs(r - 0.35) * 50.0) * flare;
    return tm(col);
}
