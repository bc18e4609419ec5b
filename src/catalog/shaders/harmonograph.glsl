vec3 vis(vec2 p, vec2 uv) {
    const int N = 120;
    const float T = 28.0;
    const float dt = T / float(N);
    mat2 R = rot(MT * 0.07) * (0.5 + BASS * 0.35);
    float ph1 = MT * 0.21, ph2 = MT * 0.13;
    // Every term turns by a fixed angle per segment: rotating its (cos, sin) pair spares the sines.
    vec2 a1 = vec2(cos(ph1), sin(ph1)), a2 = vec2(cos(ph2 * 2.0), sin(ph2 * 2.0));
    vec2 a3 = vec2(cos(ph2), sin(ph2)), a4 = a1;
    vec2 a5 = vec2(cos(MT), sin(MT)), a6 = vec2(cos(MT * 1.3), -sin(MT * 1.3));
    mat2 s1 = rot(dt), s2 = rot(1.003 * dt), s3 = rot(2.0 * dt), s4 = rot(0.997 * dt), s5 = rot(3.0 * dt), s6 = rot(4.0 * dt);
    float damp = 1.0, fade = exp(-dt * 0.055);
    vec2 prev = R * (vec2(a1.y + 0.35 * a2.y, a3.y + 0.35 * a4.x) + vec2(MID * 0.45 * a5.y, HIGH * 0.35 * a6.x));

    vec3 col = PAL(0.5) * 0.05 * exp(-1.5 * length(p));
    float dm = 0.1, km = 0.0;
    for (int i = 1; i <= N; ++i) {
        a1 = s1 * a1; a2 = s2 * a2; a3 = s3 * a3; a4 = s4 * a4; a5 = s5 * a5; a6 = s6 * a6;
        damp *= fade;
        vec2 cur = R * (vec2(a1.y + 0.35 * a2.y, a3.y + 0.35 * a4.x) + vec2(MID * 0.45 * a5.y, HIGH * 0.35 * a6.x)) * damp;
        if (all(greaterThan(p, min(prev, cur) - dm)) && all(lessThan(p, max(prev, cur) + dm))) {
            float d = sdSeg(p, prev, cur);
            if (d < dm) { dm = d; km = float(i - 1) / float(N); }
        }
        prev = cur;
    }
    float w = 0.0025 + 0.002 * (1.0 - km);
    col += PAL(km * 0.75 + 0.05) * w / (dm + w) * (0.45 + 0.55 * km) * smoothstep(0.1, 0.03, dm) * 1.1;
    col += mix(PAL(0.0), vec3(1.0), 0.5) * 0.006 / (length(p - prev) + 0.006) * (0.6 + BASS);
    return tm(col);
}
