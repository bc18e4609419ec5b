vec3 vis(vec2 p, vec2 uv) {
    const float HZ = -0.5;
    bool water = p.y < HZ;
    // the lake mirrors the sky with a slight ripple
    float y = water ? 2.0 * HZ - p.y + 0.006 * sin(p.y * 140.0 + TIME * 2.0) : p.y;

    vec3 col = mix(PAL(0.5) * 0.07, vec3(0.004, 0.006, 0.02), smoothstep(HZ, 0.9, y));
    vec2 g = vec2(p.x, y) * 36.0;
    vec2 id = floor(g);
    float h = h21(id);
    float st = step(0.93, h) * smoothstep(0.09, 0.0, length(fract(g) - 0.5 - (h22(id) - 0.5) * 0.6));
    col += vec3(0.9, 0.95, 1.0) * st * (0.55 + 0.45 * sin(TIME * 2.0 + h * 60.0)) * smoothstep(HZ, HZ + 0.4, y);

    vec3 aur = vec3(0.0);
    for (int i = 0; i < 5; ++i) {
        float fi = float(i);
        float x = p.x * (0.55 + fi * 0.12) + fi * 1.7;
        float base = HZ + 0.25 + fi * 0.13 + 0.17 * sin(x * (1.5 + fi * 0.3) + MT * (0.1 + fi * 0.03))
                   + 0.16 * (noise(vec2(x * 2.6 + MT * 0.08, fi * 5.0)) - 0.5);
        float s = SP(abs(uv.x - 0.5) * 1.6 + fi * 0.04 + 0.02);
        float hgt = 0.07 + s * 0.55;
        float dy = y - base;
        float inten = dy > 0.0 ? exp(-dy / hgt) * (1.0 + 1.5 * exp(-dy * 30.0)) : exp(dy * 35.0);
        float rays = 0.35 + 0.65 * noise(vec2(x * 34.0 + fi * 11.0, MT * 0.25)) * (0.6 + 0.4 * noise(vec2(x * 90.0, fi)));
        vec3 c = mix(PAL(fi * 0.06), PAL(0.5 + fi * 0.05), smoothstep(0.0, hgt * 1.6, dy));
        aur += c * inten * rays * (0.4 + s * 0.35);
    }
    col += aur * smoothstep(HZ - 0.01, HZ + 0.15, y);
    if (water) col *= 0.35;

    float hill = HZ + 0.05 + 0.09 * fbm(vec2(p.x * 1.4, 2.0)) - 0.05 * smoothstep(0.3, 1.6, abs(p.x));
    col = mix(col, PAL(0.5) * 0.015, step(abs(p.y - HZ + 0.0), hill - HZ) * step(HZ, p.y));
    return tm(col * 1.1);
}
