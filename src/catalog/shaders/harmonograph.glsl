vec3 vis(vec2 p, vec2 uv) {
    const int N = 120;
    const float T = 28.0;
    float sz = 0.5 + BASS * 0.35;
    mat2 R = rot(MT * 0.07);
    float ph1 = MT * 0.21, ph2 = MT * 0.13;
    vec2 P[N + 1];
    for (int i = 0; i <= N; ++i) {
        float t = float(i) / float(N) * T;
        vec2 v = vec2(sin(t + ph1) + 0.35 * sin(1.003 * t + ph2 * 2.0),
                      sin(2.0 * t + ph2) + 0.35 * cos(0.997 * t + ph1));
        v += vec2(MID * 0.45 * sin(3.0 * t + MT), HIGH * 0.35 * cos(4.0 * t - MT * 1.3));
        P[i] = R * v * exp(-t * 0.055) * sz;
    }
    vec3 col = PAL(0.5) * 0.05 * exp(-1.5 * length(p));
    float dm = 0.1, km = 0.0;
    for (int i = 0; i < N; ++i) {
        vec2 a = P[i], b = P[i + 1];
        if (any(lessThan(p, min(a, b) - dm)) || any(greaterThan(p, max(a, b) + dm))) continue;
        float d = sdSeg(p, a, b);
        if (d < dm) { dm = d; km = float(i) / float(N); }
    }
    float w = 0.0025 + 0.002 * (1.0 - km);
    col += PAL(km * 0.75 + 0.05) * w / (dm + w) * (0.45 + 0.55 * km) * smoothstep(0.1, 0.03, dm) * 1.1;
    col += mix(PAL(0.0), vec3(1.0), 0.5) * 0.006 / (length(p - P[N]) + 0.006) * (0.6 + BASS);
    return tm(col);
}
