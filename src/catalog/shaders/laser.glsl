vec3 vis(vec2 p, vec2 uv) {
    float pat = floor(TIME / 2.0);
    float pt = fract(TIME / 2.0);
    float haze = 0.45 + 0.8 * fbm(p * 1.8 + vec2(TIME * 0.06, -TIME * 0.03));
    vec3 col = PAL(0.5) * 0.02 * haze;
    float spread = 0.12 + BASS * 0.22;
    for (int i = 0; i < 6; ++i) {
        float fi = float(i);
        vec2 src = vec2((fi - 2.5) / 2.5 * ASPECT * 0.8, -1.02);
        float hs = h11(pat * 7.3 + fi);
        float sweep = sin(TIME * (0.6 + hs * 1.4) + fi * 1.7 + pat) * (0.25 + hs * 0.35);
        float base = (hs - 0.5) * 0.6 + sweep;
        vec2 q = p - src;
        float e = 0.35 + SP(0.04 + fi / 6.0 * 0.7) * 1.6;
        vec3 c = PAL(fi / 6.0 + pat * 0.25);
        for (int b = 0; b < 5; ++b) {
            float a = base + (float(b) - 2.0) * spread * (0.6 + 0.8 * h11(pat + fi * 3.0));
            vec2 d = vec2(sin(a), cos(a));
            float t = dot(q, d);
            float dd = abs(q.x * d.y - q.y * d.x);
            float w = 0.003 + max(t, 0.0) * 0.0015;
            float beam = exp(-dd / w * 0.4) * 0.1 + smoothstep(w, 0.0, dd);
            col += mix(c, vec3(1.0), smoothstep(w * 0.5, 0.0, dd) * 0.5) * e * beam * step(0.0, t) * exp(-t * 0.3) * haze * 0.8;
        }
        // the source flashes on the beat
        col += mix(c, vec3(1.0), 0.5) * (exp(-length(q) * 30.0) + 0.002 / (length(q) + 0.01)) * (0.4 + BEAT * 2.0);
    }
    return tm(col);
}
