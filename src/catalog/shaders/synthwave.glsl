vec3 vis(vec2 p, vec2 uv) {
    const float hor = -0.12;
    float ax = abs(p.x) / ASPECT;
    vec3 col = mix(PAL(0.75) * 0.04, PAL(0.25) * 0.22, smoothstep(0.7, hor, p.y));

    vec2 sc = vec2(clamp(MOUSE.x, -ASPECT, ASPECT) * 0.6, 0.28);
    float R = 0.36 + BASS * 0.07;
    vec2 d = p - sc;
    float t = clamp((d.y + R) / (2.0 * R), 0.0, 1.0);
    float stripe = step(0.0, d.y) + step(0.5 - 0.45 * (1.0 - t) * 0.9, fract(d.y * 14.0 + TIME * 0.4));
    float disc = smoothstep(R, R - 0.006, length(d)) * min(stripe, 1.0);
    vec3 sun = mix(PAL(0.0) * 1.1, mix(PAL(0.5), vec3(1.0), 0.55), smoothstep(0.1, 1.0, t));
    col += sun * disc + PAL(0.0) * 0.25 * exp(-3.5 * max(length(d) - R, 0.0)) * (0.7 + BASS * 0.6);

    if (p.y > hor) {
        float s = SP(ax * 0.8 + 0.03);
        float m = (fbm(vec2(p.x * 2.2 + 11.0, 0.5)) - 0.25) * (0.25 + s * 0.55) + 0.015;
        m *= smoothstep(0.0, 0.5, ax + 0.15);
        float y = p.y - hor;
        if (y < m) {
            col = mix(PAL(0.25) * 0.08, PAL(0.75) * 0.05, y / max(m, 1e-3));
            col += PAL(0.6) * 0.4 * exp(-120.0 * (m - y)) * (0.5 + s);
        }
        return col;
    }

    float dz = hor - p.y;
    float z = 0.35 / max(dz, 1e-3);
    vec2 w = vec2(p.x * z * 2.5, z * 1.5 + MT * 2.0);
    vec2 fw = fwidth(w) + 1e-4;
    vec2 g = abs(fract(w) - 0.5) / fw;
    float line = 1.0 - min(min(g.x, g.y) * 0.7, 1.0);
    vec2 gg = abs(fract(w) - 0.5);
    float glow = exp(-min(gg.x / (fw.x * 6.0), gg.y / (fw.y * 6.0)));
    float s = SP(ax * 0.8 + 0.03);
    float fog = exp(-z * 0.12);
    col = PAL(0.75) * 0.05 * (1.0 - fog);
    vec3 lc = PAL(0.0 + ax * 0.3);
    col += lc * (line * 0.9 + glow * 0.35) * (0.3 + s * 1.4) * fog;
    col += PAL(0.0) * 0.35 * exp(-dz * 25.0);
    return col;
}
