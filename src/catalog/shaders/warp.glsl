vec3 vis(vec2 p, vec2 uv) {
    vec2 q = p - MOUSE * 0.4;
    float r = length(q) + 1e-4;
    float a = atan(q.y, q.x + 1e-7) / TAU + 0.5;
    vec3 col = PAL(0.6) * 0.03;
    for (int i = 0; i < 4; ++i) {
        float fi = float(i);
        float N = 90.0 + fi * 40.0;
        float seg = a * N + fi * 0.37;
        float id = floor(seg);
        float h = h11(id * 0.731 + fi * 13.1);
        float z = fract(h * 7.0 + MT * (0.25 + 0.1 * fi));
        float rs = z * z * 2.4 + 0.05;
        float len = (0.05 + LVL * 0.55) * z * (0.6 + h);
        float along = clamp((r - rs + len) / len, 0.0, 1.0) * step(r, rs);
        float w = abs(fract(seg) - 0.5) * TAU / N * r;
        float width = 0.002 + 0.004 * z;
        float b = along * along * smoothstep(width * 2.0, 0.0, w) * smoothstep(0.0, 0.2, z);
        vec3 c = PAL(h + fi * 0.2);
        col += mix(c * c * 1.3, vec3(1.0), 0.35 * along * along) * b * (0.6 + 0.5 * fi / 3.0) * step(0.4, h11(id + fi));
    }
    col += PAL(0.4) * (0.1 + BASS * 0.6) * exp(-r * 5.0);
    col += vec3(1.0) * (0.02 + BASS * 0.05) / (r * 6.0 + 0.1);
    return tm(col * 1.5);
}
