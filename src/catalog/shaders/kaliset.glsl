vec3 vis(vec2 p, vec2 uv) {
    float zoom = 0.75 - BASS * 0.15;
    vec2 q = p * zoom + MOUSE * 0.2;
    vec2 c = vec2(0.92, 0.62) + 0.06 * vec2(sin(MT * 0.11), cos(MT * 0.083)) + SP(0.12) * vec2(0.05, -0.04);
    float acc = 0.0, fine = 0.0, pl = 0.0;
    vec3 col = vec3(0.0);
    for (int i = 0; i < 18; ++i) {
        q = abs(q) / max(dot(q, q), 1e-4) - c;
        float l = length(q);
        // how far consecutive orbit lengths jump traces the filaments
        float d = abs(l - pl);
        pl = l;
        float w = float(i) / 18.0;
        col += PAL(w * 0.7 + MT * 0.015) * exp(-d * 3.0) * 0.09;
        fine += exp(-d * 25.0);
    }
    col *= col * 3.0;
    col += PAL(0.1) * fine * 0.02 * (0.3 + HIGH * 2.0);
    return tm(col);
}
