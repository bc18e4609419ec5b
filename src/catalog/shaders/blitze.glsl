float boltX(float y, float seed) {
    // jagged random walk: coarse zigzag plus finer kinks
    return (noise(vec2(y * 3.0, seed)) - 0.5) * 0.7 + (noise(vec2(y * 11.0, seed + 5.0)) - 0.5) * 0.18;
}

vec3 vis(vec2 p, vec2 uv) {
    float rate = 0.45 + BASS * 0.6;
    float t = TIME * rate;
    float cyc = floor(t), ph = fract(t);
    float seed = h11(cyc + 0.5) * 50.0;
    float x0 = (h11(cyc * 1.3 + 2.0) - 0.5) * ASPECT * 1.2;
    // flash: fast double strike and decay
    float fl = exp(-ph * 9.0) + 0.6 * exp(-abs(ph - 0.12) * 40.0);
    fl *= 0.6 + BASS * 0.8;
    // clouds lit from the bolt
    float cl = fbm(p * vec2(1.2, 2.2) + vec2(TIME * 0.03, 0.0));
    float cloudMask = smoothstep(-0.1, 0.7, p.y + cl * 0.6);
    vec3 col = mix(PAL(0.5) * 0.03, PAL(0.6) * 0.32, cloudMask * cl);
    col += PAL(0.5) * 0.05 * smoothstep(-1.0, -0.6, -abs(p.y + 0.95));  // a faint glow on the horizon
    float near = exp(-length(p - vec2(x0, 0.8)) * 1.6);
    col += mix(PAL(0.2), vec3(1.0), 0.4) * cl * cloudMask * fl * (0.35 + near * 1.2);
    // the bolt: 24 segments from the cloud base down to the ground
    float d = 1e9, db = 1e9;
    if (abs(p.x - x0) < 0.9) {
        vec2 prevP = vec2(x0 + boltX(0.0, seed), 0.75);
        for (int i = 1; i <= 24; ++i) {
            float y = 0.75 - float(i) / 24.0 * 1.85;
            vec2 cur = vec2(x0 + boltX(float(i) / 24.0 * 1.85, seed), y);
            d = min(d, sdSeg(p, prevP, cur));
            prevP = cur;
        }
        // two side branches that split off and thin out
        for (int b = 0; b < 2; ++b) {
            float fb = float(b);
            float sy = 0.25 + 0.3 * fb + 0.2 * h11(seed + fb);
            vec2 a = vec2(x0 + boltX(sy, seed), 0.75 - sy);
            float dir = h11(seed * 2.0 + fb) > 0.5 ? 1.0 : -1.0;
            for (int i = 1; i <= 8; ++i) {
                float fi = float(i) / 8.0;
                vec2 c = vec2(x0 + boltX(sy, seed) + dir * fi * 0.35 + boltX(fi * 0.8, seed + 9.0 + fb) * 0.4, 0.75 - sy - fi * 0.45);
                db = min(db, sdSeg(p, a, c) + fi * 0.002);
                a = c;
            }
        }
    }
    // the channel stays faintly lit after the strike
    float vis1 = max(max(exp(-ph * 2.5), 0.8 * exp(-abs(ph - 0.12) * 30.0)), 0.3);
    vec3 bc = mix(PAL(0.2), vec3(1.0), 0.7);
    col += bc * (0.004 / (d + 0.004) + 0.5 * exp(-d * 30.0)) * vis1 * (0.5 + BASS);
    col += bc * (0.0025 / (db + 0.003) + 0.25 * exp(-db * 40.0)) * vis1 * (0.4 + BASS * 0.8);
    // distant sheet lightning keeps the sky alive between strikes
    col += PAL(0.3) * cl * cloudMask * 0.22 * (0.6 + 0.4 * sin(TIME * 0.7));
    return tm(col * 1.2);
}
