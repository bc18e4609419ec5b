vec3 vis(vec2 p, vec2 uv) {
    const float N = 96.0;
    const float R = 0.86;
    float k = 2.0 + 0.5 * (1.0 - cos(MT * 0.02)) * 3.0 + BEAT * 0.04;
    float r = length(p);
    vec3 col = PAL(0.75) * 0.03 * exp(-r * 2.0);
    if (r < R + 0.08) {
        float px = 1.0 / RES.y;
        for (int i = 0; i < 96; ++i) {
            float fi = float(i);
            float a1 = fi / N * TAU, a2 = fi * k / N * TAU;
            vec2 A = R * vec2(sin(a1), cos(a1)), B = R * vec2(sin(a2), cos(a2));
            vec2 lo = min(A, B) - 0.03, hi = max(A, B) + 0.03;
            if (any(lessThan(p, lo)) || any(greaterThan(p, hi))) continue;
            float d = sdSeg(p, A, B);
            float s = SP(fi / N * 0.9);
            col += PAL(fi / N * 0.6 + TIME * 0.015) * (0.12 + s * 0.9) * (px * 1.2 / (d + px * 1.2)) * smoothstep(0.03, 0.0, d);
        }
        // pins on the rim
        float a = atan(p.x, p.y);
        float pin = fract(a / TAU * N + 0.5) - 0.5;
        col += PAL(0.2) * smoothstep(0.012, 0.0, length(vec2(pin * TAU / N * R, r - R))) * 0.8;
    }
    col += PAL(0.1) * 0.15 * smoothstep(0.006, 0.0, abs(r - R - 0.02));
    return tm(col);
}
