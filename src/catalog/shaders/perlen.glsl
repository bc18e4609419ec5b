vec3 vis(vec2 p, vec2 uv) {
    const float N = 72.0;
    float r = length(p);
    float a = atan(p.x, p.y + 1e-6) + TIME * 0.05;
    float seg = fract(a / TAU + 0.5) * N;
    float id = floor(seg);
    float f = fract(seg) - 0.5;
    float x = abs(id + 0.5 - N * 0.5) / (N * 0.5);
    float s = SP(x * 0.85 + 0.02);

    float r0 = 0.42;
    float gap = (0.065 + BASS * 0.03) * (0.75 + s * 0.6);
    float t = f * TAU / N * r;
    vec3 col = PAL(0.5) * 0.06 * exp(-r * 1.5) + PAL(0.1) * 0.05 * exp(-abs(r - r0) * 6.0);
    col += PAL(0.2) * 0.6 * smoothstep(0.005, 0.0, abs(r - r0 + 0.035));
    col += PAL(0.2) * 0.12 * exp(-abs(r - r0 + 0.035) * 25.0);
    // the thread each string hangs on
    col += PAL(0.6) * 0.03 * smoothstep(0.002, 0.0, abs(t)) * smoothstep(r0 - 0.02, r0, r) * smoothstep(r0 + gap * 6.5, r0 + gap * 5.5, r);
    for (int j = 0; j < 7; ++j) {
        float fj = float(j);
        float rj = r0 + gap * fj;
        float size = min(0.014 * pow(rj / r0, 0.8), TAU / N * rj * 0.38);
        vec2 q = vec2(t, r - rj);
        float d = length(q) - size;
        float lit = smoothstep(fj, fj + 1.0, s * 8.5);
        vec3 c = mix(PAL(x * 0.7 + fj * 0.05 + TIME * 0.01), vec3(1.0), 0.3 * lit * s);
        float body = smoothstep(0.002, -0.002, d);
        // pearl sheen: bright spot towards the upper left, darker rim
        float sheen = exp(-dot(q + size * 0.35, q + size * 0.35) / (size * size) * 3.0);
        float shade = 0.45 + 0.55 * smoothstep(size, 0.0, length(q));
        col += c * body * (shade * (0.12 + lit * 1.1) + sheen * (0.15 + lit * 0.9));
        col += c * lit * 0.012 / (max(d, 0.0) + 0.012) * 0.45 * smoothstep(0.06, 0.0, d);
    }
    return tm(col * 1.5);
}
