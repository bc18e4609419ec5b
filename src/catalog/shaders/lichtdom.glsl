vec3 vis(vec2 p, vec2 uv) {
    vec2 L = vec2(clamp(MOUSE.x, -ASPECT, ASPECT) * 1.5, 3.2);
    const float FLOOR = -0.75, TOP = 0.42, SPC = 0.5;
    float flare = 1.0 + BEAT * 1.5;
    // haze is lit where the way up to the light passes between the pillars
    float lit = 1.0;
    vec2 dl = L - p;
    // only the stretch below the pillar tops can be blocked
    float fe = clamp((TOP - p.y) / dl.y, 0.0, 1.0);
    for (int i = 0; i < 40; ++i) {
        float f = (float(i) + 0.5) / 40.0 * fe;
        vec2 s = p + dl * f;
        if (s.y < FLOOR || s.y > TOP) continue;
        float cx = floor(s.x / SPC + 0.5) * SPC;
        float w = 0.04 + SP(h11(cx * 3.1 + 7.0) * 0.6 + 0.02) * 0.045 + step(TOP - 0.05, s.y) * 0.025;
        // penumbra widens away from the light
        float pen = 0.003 + 0.025 * (1.0 - f);
        lit *= smoothstep(w - pen, w + pen, abs(s.x - cx));
    }
    float haze = 0.7 + 0.6 * fbm(p * 2.5 + vec2(TIME * 0.04, -TIME * 0.02));
    float rays = (lit + 0.05) * haze * (0.3 + 0.7 * smoothstep(-1.0, 1.0, p.y)) * exp(-abs(p.x - L.x * 0.5) * 0.6) * 0.5;

    float cx = floor(p.x / SPC + 0.5) * SPC;
    float w = 0.04 + SP(h11(cx * 3.1 + 7.0) * 0.6 + 0.02) * 0.045 + step(TOP - 0.05, p.y) * 0.025;
    float inP = smoothstep(w + 0.004, w, abs(p.x - cx)) * step(FLOOR, p.y) * step(p.y, TOP);
    float dL = length(p - L);
    vec3 col = PAL(0.75) * 0.025;
    // pillar: fluted dark stone, the edge facing the light catches it
    float side = (p.x - cx) / w * sign(L.x - cx + 1e-4);
    vec3 stone = vec3(0.014, 0.011, 0.008) * (1.0 + 0.4 * sin((p.x - cx) / w * 9.0));
    stone += PAL(0.3) * 0.25 * smoothstep(0.5, 1.0, side) * exp(-abs(L.x - cx) * 1.5) * smoothstep(-0.7, TOP, p.y);
    col = mix(col, stone, inP);
    if (p.y < FLOOR) col *= 0.6;
    col += PAL(0.2) * rays * (0.9 + BASS * 0.9) * flare * (1.0 - inP * 0.85);
    col += mix(PAL(0.5), vec3(1.0), 0.5) * 0.3 * exp(-length((p - vec2(L.x * 0.5, 1.05)) * vec2(0.6, 1.8)) * 2.5) * flare;
    // dust motes, lit only inside the rays
    vec2 g = p * 16.0 + vec2(sin(TIME * 0.2) * 0.5, TIME * 0.15);
    vec2 id = floor(g);
    float m = step(0.8, h21(id)) * smoothstep(0.08, 0.0, length(fract(g) - h22(id)));
    col += PAL(0.4) * m * rays * 3.0 * (1.0 - inP);
    return tm(col * 1.3);
}
