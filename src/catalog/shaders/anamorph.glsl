vec3 vis(vec2 p, vec2 uv) {
    vec2 L = vec2(ASPECT * 0.55 * sin(MT * 0.23), 0.42 * sin(MT * 0.17 + 1.3)) + MOUSE * 0.6;
    vec2 d = p - L;
    float r = length(d);
    float flare = 0.85 + BEAT * 1.3;
    // deep blue veiling glare, stronger near the light
    vec3 col = PAL(0.0) * (0.03 + 0.12 * exp(-r * 1.6)) + PAL(0.75) * 0.03 * (1.0 - uv.y);
    // core and halo
    col += vec3(1.0) * 0.0025 / (r * r + 0.0008) * flare;
    col += mix(PAL(0.25), vec3(1.0), 0.3) * exp(-r * 5.0) * 0.7 * flare;
    // long horizontal streaks, longer with bass
    float len = 0.7 + BASS * 2.6;
    float ax = abs(d.x);
    vec3 blue = mix(PAL(0.25), vec3(0.55, 0.8, 1.0), 0.4);
    col += mix(blue, vec3(1.0), 0.5) * exp(-abs(d.y) * 300.0) * exp(-ax / len) * 2.2 * flare;
    col += blue * exp(-abs(d.y) * 60.0) * exp(-ax / (len * 0.8)) * 0.6 * flare;
    col += PAL(0.0) * exp(-abs(d.y) * 9.0) * exp(-ax / (len * 0.6)) * 0.45 * flare;
    // faint secondary streaks above and below
    col += blue * 0.25 * flare * exp(-ax / (len * 0.45)) * (exp(-abs(d.y - 0.06) * 400.0) + exp(-abs(d.y + 0.06) * 400.0));
    // six hexagonal ghosts on the line through the centre, mirrored
    for (int i = 0; i < 6; ++i) {
        float fi = float(i);
        float t = 0.6 - fi * 0.42 + 0.1 * sin(fi * 3.1);
        vec2 c = L * t;
        float size = 0.05 + 0.12 * h11(fi + 4.0);
        vec2 g = abs(p - c);
        float hex = max(dot(g, vec2(0.5, 0.8660254)), g.x) - size;
        float fill = smoothstep(0.008, -0.008, hex);
        float rim = exp(-abs(hex) * 90.0);
        vec3 gc = PAL(0.1 + fi * 0.17);
        col += gc * (fill * (0.14 + 0.12 * smoothstep(-size, 0.0, hex)) + rim * 0.3) * flare;
    }
    // a ring ghost around the light and a wide ring mirrored through the centre
    col += PAL(0.5) * 0.12 * exp(-abs(r - 0.38) * 40.0) * flare;
    col += PAL(0.3) * 0.08 * exp(-abs(length(p + L * 0.3) - 0.5) * 30.0) * flare;
    return tm(col);
}
