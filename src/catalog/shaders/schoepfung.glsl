vec3 vis(vec2 p, vec2 uv) {
    float l = max(length(p) * 0.5, 1e-3);
    vec2 dir = normalize(p + 1e-6);
    float freq = 9.0 + BASS * 6.0;
    vec3 ch;
    for (int i = 0; i < 3; ++i) {
        // each channel sees the pattern a moment later, which splits it into colour fringes
        float z = MT * 0.6 + float(i) * 0.07;
        vec2 q = p * 0.5 + 0.5 + dir * (sin(z) + 1.0) * abs(sin(l * freq - z * 2.0));
        ch[i] = 0.01 / (length(fract(q) - 0.5) + 0.002);
    }
    ch /= l + 0.03;
    vec3 col = PAL(0.0) * ch.r + PAL(0.33) * ch.g + PAL(0.66) * ch.b;
    col += PAL(0.5) * 0.08 * exp(-3.0 * l);
    return tm(col * 0.9);
}
