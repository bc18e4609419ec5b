vec3 vis(vec2 p, vec2 uv) {
    const float FLOOR = -0.72, TOP = 0.4, SPC = 0.5;
    vec2 L = vec2(clamp(MOUSE.x, -ASPECT, ASPECT) * 0.9, 1.3);
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
        float w = 0.045 + SP(h11(cx * 3.1 + 7.0) * 0.6 + 0.02) * 0.05 + step(TOP - 0.05, s.y) * 0.025;
        // penumbra widens away from the pillar
        float pen = 0.002 + 0.03 * (1.0 - f);
        lit *= smoothstep(w - pen, w + pen, abs(s.x - cx));
    }
    float dist = length(dl);
    // a soft cone below the opening, dimming with distance
    float cone = smoothstep(0.35, 0.95, dl.y / dist) / (1.0 + dist * dist * 0.5);
    float haze = 0.35 + 1.1 * fbm(p * vec2(2.2, 1.3) + vec2(TIME * 0.05, TIME * 0.03));
    // fine streaks along the rays, drifting slowly
    float ang = atan(dl.x, dl.y);
    haze *= 0.45 + 0.9 * noise(vec2(ang * 22.0 + TIME * 0.15, TIME * 0.1)) * (0.6 + 0.4 * noise(vec2(ang * 7.0 - TIME * 0.1, 3.0)));
    float sc = lit * cone * haze * (0.6 + BASS * 0.7) * flare;

    vec3 col = PAL(0.75) * 0.02 + PAL(0.25) * 0.08 * cone * haze;
    col += mix(PAL(0.25) * 1.3, mix(PAL(0.0), vec3(1.0), 0.15), clamp(sc * 0.7, 0.0, 1.0)) * sc;
    // the floor catches pools of light between the shadows
    if (p.y < FLOOR) col = col * 0.5 + mix(PAL(0.0), vec3(1.0), 0.3) * lit * cone * 0.6 * flare * smoothstep(FLOOR - 0.6, FLOOR, p.y);

    float cx = floor(p.x / SPC + 0.5) * SPC;
    float w = 0.045 + SP(h11(cx * 3.1 + 7.0) * 0.6 + 0.02) * 0.05 + step(TOP - 0.05, p.y) * 0.025;
    float inP = smoothstep(w + 0.004, w, abs(p.x - cx)) * step(FLOOR, p.y) * step(p.y, TOP);
    // pillar: fluted dark stone, the edge facing the light catches it
    float side = (p.x - cx) / w * sign(L.x - cx + 1e-4);
    vec3 stone = vec3(0.016, 0.012, 0.008) * (1.0 + 0.5 * sin((p.x - cx) / w * 9.0));
    stone += PAL(0.3) * 0.4 * smoothstep(0.55, 1.0, side) * exp(-abs(L.x - cx) * 1.2) * smoothstep(-0.8, TOP, p.y);
    col = mix(col, stone, inP);
    // the opening itself
    col += mix(PAL(0.5), vec3(1.0), 0.6) * 0.8 * exp(-length((p - L) * vec2(0.5, 1.4)) * 3.0) * flare;
    // dust motes, lit only inside the rays
    vec2 g = p * 16.0 + vec2(sin(TIME * 0.2) * 0.5, TIME * 0.15);
    vec2 id = floor(g);
    float m = step(0.8, h21(id)) * smoothstep(0.08, 0.0, length(fract(g) - h22(id)));
    col += PAL(0.4) * m * sc * 2.5 * (1.0 - inP);
    return tm(col * 1.1);
}
