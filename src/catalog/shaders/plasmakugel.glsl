vec3 vis(vec2 p, vec2 uv) {
    const float R = 0.68;
    vec2 c0 = vec2(0.0, 0.12);
    vec2 q = p - c0;
    float r = length(q);
    vec3 col = PAL(0.65) * 0.025 * exp(-abs(p.y + 0.6) * 2.0);

    // stand: dark cone below the globe with a faint rim light
    vec2 sq = p - vec2(0.0, -0.78);
    float sw = mix(0.42, 0.2, clamp((sq.y + 0.22) / 0.34, 0.0, 1.0));
    float stand = max(abs(sq.x) - sw, abs(sq.y) - 0.17);
    col = mix(col, vec3(0.02, 0.018, 0.03) + PAL(0.6) * 0.1 * smoothstep(-0.17, 0.17, sq.y) * (0.6 + 0.4 * cos(sq.x * 6.0)), smoothstep(0.004, 0.0, stand));
    col += PAL(0.6) * 0.3 * smoothstep(0.006, 0.0, abs(stand)) * smoothstep(-0.17, 0.17, sq.y);

    vec2 m = MOUSE - c0;
    float near = smoothstep(R * 1.5, R * 0.9, length(m));
    vec2 mdir = length(m) > 1e-3 ? m / length(m) : vec2(0.0, 1.0);
    float inside = smoothstep(R + 0.004, R - 0.004, r);
    if (r < R + 0.3) {
        vec3 glow = PAL(0.1) * 0.18 * exp(-r * 3.0) * (0.6 + BASS);
        for (int i = 0; i < 9; ++i) {
            float fi = float(i);
            float e = 0.25 + SP(0.03 + h11(fi + 1.3) * 0.5) * 1.1 + BASS * 0.4;
            float a0 = fi / 9.0 * TAU + MT * 0.25 * (h11(fi) - 0.5) + sin(TIME * 0.7 + fi * 2.1) * 0.35;
            vec2 d = vec2(cos(a0), sin(a0));
            if (i == 0) { d = normalize(mix(d, mdir, near) + vec2(1e-4)); e *= 1.0 + near * 1.5; }
            vec2 n = vec2(-d.y, d.x);
            float t = dot(q, d), o = dot(q, n);
            if (t < 0.0 || t > R) continue;
            float tt = t / R;
            float jig = (noise(vec2(t * 7.0 - TIME * 3.0, fi * 7.1)) - 0.5) * 0.22
                      + (noise(vec2(t * 23.0 + TIME * 5.0, fi * 3.3)) - 0.5) * 0.06;
            float dd = abs(o - jig * tt);
            float w = 0.0025 + 0.002 * e;
            // side branch forks off half way and drifts away
            float bj = (noise(vec2(t * 11.0 + TIME * 4.0, fi * 5.7 + 9.0)) - 0.5) * 0.2 + 0.25 * (tt - 0.5);
            float db = abs(o - jig * tt - bj * (h11(fi + 4.0) > 0.5 ? 1.0 : -1.0)) + step(tt, 0.5) * 1.0;
            vec3 fc = mix(PAL(0.05 + fi * 0.09), vec3(1.0), 0.35);
            col += fc * e * inside * (w / (dd + w) * 0.35 + w / (db + w) * 0.18 * smoothstep(0.5, 0.6, tt));
            col += fc * e * inside * 0.02 * exp(-dd * 18.0);
        }
        // bright spot where the filament touches the glass
        col += PAL(0.0) * (exp(-length(q - mdir * R) * 16.0) * 1.2 + exp(-length(q - mdir * R) * 3.0) * 0.4 * inside) * near * (0.6 + BASS);
        col += glow * inside;
        // glass: electrode, rim and highlight
        col += vec3(1.0, 0.9, 1.0) * 0.05 / (r + 0.05) * smoothstep(0.09, 0.05, r) + PAL(0.1) * 0.02 / (r + 0.02);
        col += PAL(0.55) * (smoothstep(0.012, 0.0, abs(r - R)) * 0.4 + 0.12 * exp(-abs(r - R) * 30.0));
        float hl = length((q - vec2(-0.24, 0.3)) * vec2(1.0, 1.6));
        col += vec3(0.6) * smoothstep(0.12, 0.0, hl) * inside * 0.35;
        col += PAL(0.6) * 0.06 * smoothstep(R * 0.6, R, r) * inside;
    }
    return tm(col * 1.2);
}
