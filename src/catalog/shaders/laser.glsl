vec3 vis(vec2 p, vec2 uv) {
    float pat = floor(TIME / 2.0);
    float haze = 0.3 + 1.1 * fbm(p * 2.2 + vec2(TIME * 0.12, -TIME * 0.05));
    vec3 col = PAL(0.5) * 0.02 * haze * (1.2 - uv.y);
    float spread = 0.09 + BASS * 0.26;
    for (int i = 0; i < 6; ++i) {
        float fi = float(i);
        vec2 src = vec2((fi - 2.5) / 2.5 * ASPECT * 0.82, -1.0);
        float hs = h11(pat * 7.3 + fi);
        float sweep = sin(TIME * (0.6 + hs * 1.4) + fi * 1.7 + pat) * (0.25 + hs * 0.35);
        float base = (hs - 0.5) * 0.7 + sweep;
        vec2 q = p - src;
        float e = 0.45 + SP(0.04 + fi / 6.0 * 0.7) * 2.2;
        vec3 c = PAL(fi / 6.0 + pat * 0.25);
        float fan = spread * (0.6 + 0.8 * h11(pat + fi * 3.0));
        // the haze inside a fan catches a faint sheet of light
        float qa = atan(q.x, max(q.y, 1e-3)) - base;
        col += c * e * 0.05 * haze * smoothstep(2.2 * fan, 1.6 * fan, abs(qa)) * exp(-length(q) * 0.8);
        for (int b = 0; b < 5; ++b) {
            float a = base + (float(b) - 2.0) * fan;
            vec2 d = vec2(sin(a), cos(a));
            float t = dot(q, d);
            if (t < 0.0) continue;
            float dd = abs(q.x * d.y - q.y * d.x);
            float w = 0.0025 + t * 0.0015;
            float core = smoothstep(w, 0.0, dd);
            float glow = exp(-dd / (0.012 + t * 0.012)) * haze;
            float g = (core + glow * 0.45) * e * exp(-t * 0.22);
            col += c * g + vec3(0.9) * core * core * e * 0.35;
        }
        // the source flashes on the beat
        float r = length(q);
        col += mix(c, vec3(1.0), 0.6) * (0.004 / (r * r + 0.002) + exp(-r * 9.0) * 0.4) * (0.35 + BEAT * 2.5);
    }
    return tm(col * 1.1);
}
