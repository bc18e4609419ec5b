vec3 vis(vec2 p, vec2 uv) {
    const int N = 120;
    const float T = 26.0;
    float sz = 0.48 + BASS * 0.2;
    mat2 R = rot(MT * 0.08);
    float ph1 = MT * 0.31, ph2 = MT * 0.17;
    vec2 P[N + 1];
    for (int i = 0; i <= N; ++i) {
        float t = float(i) / float(N) * T;
        float dmp = exp(-t * 0.055);
        vec2 v = vec2(sin(2.0 * t + ph1) + 0.55 * sin(3.0 * t + ph2 + 1.2),
                      sin(3.0 * t + ph2) + 0.55 * sin(2.0 * t - ph1 + 0.4));
        v += vec2(MID * 0.35 * sin(7.0 * t + MT), HIGH * 0.3 * cos(11.0 * t - MT * 1.3));
        P[i] = R * v * dmp * sz;
    }
    vec3 col = PAL(0.5) * 0.04 * exp(-length(p));
    for (int i = 0; i < N; ++i) {
        vec2 a = P[i], b = P[i + 1];
        if (any(lessThan(p, min(a, b) - 0.08)) || any(greaterThan(p, max(a, b) + 0.08))) continue;
        float d = sdSeg(p, a, b);
        float k = float(i) / float(N);
        float w = 0.003 + 0.002 * (1.0 - k);
        col += PAL(k * 0.8 + 0.1) * w / (d + w) * (1.0 - 0.6 * k) * smoothstep(0.08, 0.02, d) * 0.55;
    }
    col += PAL(0.2) * 0.004 / (length(p - P[0]) + 0.004);
    return tm(col);
}
