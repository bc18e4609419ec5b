vec3 scene(vec2 p) {
    vec3 col = vec3(0.0);
    for (int i = 0; i < 7; ++i) {
        float fi = float(i);
        vec2 c = vec2((fi - 3.0) * 0.5 * ASPECT / 1.9, 0.25 + 0.45 * h11(fi * 1.7 + 0.3));
        vec2 size = vec2(0.1 + 0.14 * h11(fi + 9.1), 0.04 + 0.05 * h11(fi + 2.2));
        vec2 d = abs(p - c) - size;
        float box = length(max(d, 0.0)) + min(max(d.x, d.y), 0.0);
        float tube = abs(box + 0.015);
        // broken tubes stutter, the rest hum gently
        float fl = h11(floor(TIME * 12.0) + fi * 13.0);
        float on = h11(fi * 4.3) > 0.7 ? step(0.25, fl) : 0.85 + 0.15 * sin(TIME * 50.0 + fi);
        vec3 c0 = PAL(fi * 0.3 + 0.1);
        float b = on * (0.45 + BASS * 0.9);
        col += c0 * b * (smoothstep(0.006, 0.0, tube) * 1.2 + exp(-max(box, 0.0) * 10.0) * 0.3);
        // a few letters as strokes inside
        float letters = step(0.5, h21(vec2(floor((p.x - c.x) / 0.04), fi))) * step(abs(p.y - c.y), size.y * 0.4) * step(abs(p.x - c.x), size.x - 0.03);
        col += c0 * letters * b * 0.5 * step(box, 0.0);
    }
    return col;
}

vec3 vis(vec2 p, vec2 uv) {
    const float horizon = -0.25;
    vec3 col = mix(PAL(0.75) * 0.02, PAL(0.6) * 0.05, smoothstep(horizon, 1.0, p.y));
    if (p.y > horizon) {
        col += scene(p);
        col += PAL(0.6) * 0.04 * smoothstep(horizon + 0.1, horizon, p.y);
    } else {
        // wet street: mirrored scene, stretched and rippled by rain
        float depth = horizon - p.y;
        vec2 g = vec2(p.x * 6.0, depth * 14.0 / (depth + 0.2));
        vec2 id = floor(g);
        float t = fract(TIME * 1.3 + h21(id));
        vec2 o = h22(id) * 0.6 + 0.2;
        float rr = length((fract(g) - o) * vec2(1.0, 2.0));
        float ripple = sin((rr - t * 0.5) * 40.0) * exp(-rr * 6.0) * (1.0 - t);
        vec2 m = vec2(p.x + ripple * 0.01 + sin(p.y * 80.0 + TIME * 3.0) * 0.003, horizon + depth * 0.9);
        vec3 refl = vec3(0.0);
        for (int k = 0; k < 3; ++k) refl += scene(m + vec2(0.0, float(k) * 0.03 * depth));
        col += refl / 3.0 * 0.8 * exp(-depth * 1.2);
        col += PAL(0.2) * 0.05 * max(ripple, 0.0);
    }
    // rain streaks
    vec2 rp = vec2(p.x * 40.0 + p.y * 4.0, p.y * 2.0 + TIME * 6.0);
    vec2 ri = floor(rp);
    float streak = step(0.93, h21(vec2(ri.x, 3.0))) * smoothstep(0.2, 0.0, abs(fract(rp.x) - 0.5)) * smoothstep(0.2, 0.0, abs(fract(rp.y + h21(vec2(ri.x, 1.0))) - 0.5) - 0.1);
    col += PAL(0.5) * streak * (0.04 + LVL * 0.2);
    col += vec3(0.7, 0.75, 0.85) * 0.1 * smoothstep(0.85, 1.0, BEAT) * smoothstep(-0.3, 1.0, p.y);
    return tm(col * 1.2);
}
