vec3 vis(vec2 p, vec2 uv) {
    const float N = 72.0;
    float r = length(p);
    float a = atan(p.x, p.y + 1e-6) + TIME * 0.05;
    float seg = fract(a / TAU + 0.5) * N;
    float id = floor(seg);
    float f = fract(seg) - 0.5;
    float x = abs(id + 0.5 - N * 0.5) / (N * 0.5);
    float s = SP(x * 0.85 + 0.02);

    float r0 = 0.3;
    float gap = (0.042 + BASS * 0.02) * (0.55 + s * 0.9);
    float t = f * TAU / N * r;
    vec3 col = PAL(0.5) * 0.05 * exp(-r * 1.2);
    col += PAL(0.2) * 0.5 * smoothstep(0.004, 0.0, abs(r - r0 + 0.03));
    col += PAL(0.2) * 0.08 * exp(-abs(r - r0 + 0.03) * 30.0);
    col += PAL(0.6) * 0.015 * smoothstep(0.0015, 0.0, abs(t)) * smoothstep(r0 - 0.02, r0, r) * smoothstep(r0 + gap * 6.5, r0 + gap * 5.5, r);
    for (int j = 0; j < 7; ++j) {
        float fj = float(j);
        float rj = r0 + gap * fj;
        float size = 0.0115 - fj * 0.0009;
        float d = length(vec2(t, r - rj)) - size;
        float lit = smoothstep(fj, fj + 1.0, s * 8.5);
        vec3 c = mix(PAL(x * 0.7 + fj * 0.05), vec3(1.0), 0.35 * lit * smoothstep(0.0, 2.0, fj) * s);
        float body = smoothstep(0.002, -0.002, d);
        float shade = 0.6 + 0.4 * smoothstep(size, -size, length(vec2(t, r - rj) + size * 0.4) - size * 0.2);
        col += c * body * shade * (0.07 + lit * 0.95);
        col += c * lit * 0.25 * 0.01 / (max(d, 0.0) + 0.01) * smoothstep(0.05, 0.0, d);
    }
    return tm(col * 1.6);
}
