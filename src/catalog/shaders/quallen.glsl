vec3 vis(vec2 p, vec2 uv) {
    vec3 col = mix(PAL(0.75) * 0.02, PAL(0.7) * 0.07, uv.y);
    // drifting particles
    vec2 g = p * 9.0 + vec2(0.0, -TIME * 0.15);
    vec2 gi = floor(g), gf = fract(g) - 0.5;
    vec2 go = h22(gi) - 0.5;
    col += PAL(0.3) * 0.25 * smoothstep(0.06, 0.0, length(gf - go * 0.7)) * step(0.6, h21(gi + 2.3));
    for (int i = 0; i < 6; ++i) {
        float fi = float(i);
        float hs = h11(fi * 3.7 + 1.0);
        float size = 0.2 + 0.12 * hs;
        float rise = TIME * (0.035 + 0.02 * hs) + hs * 7.0;
        float y = mod1(rise, 1.0) * (2.0 + 1.4) - 1.0 - 0.7 * 2.0 + 0.6;
        vec2 c = vec2((fi - 2.5) / 2.5 * ASPECT * 0.8 + 0.12 * sin(TIME * 0.2 + fi * 2.0), y);
        vec2 q = (p - c) / size;
        if (abs(q.x) > 2.2 || q.y < -4.2 || q.y > 1.6) continue;
        float s = SP(0.05 + fi * 0.12);
        float pulse = 0.5 + 0.5 * sin(TIME * 2.2 + fi * 1.7);
        pulse = pulse * (0.4 + s * 0.8) + BEAT * s * 0.5;
        // the bell squeezes sideways and lifts while it pulses
        vec2 b = q * vec2(1.0 - pulse * 0.18, 1.0 + pulse * 0.12);
        float bell = length(b * vec2(1.0, b.y > 0.0 ? 1.25 : 3.5)) - 1.0;
        vec3 tint = PAL(fi * 0.5 + 0.25 + 0.1 * hs) * (0.55 + s * 0.9);
        float inside = smoothstep(0.0, -0.3, bell) * step(-0.25, b.y);
        col += tint * inside * (0.25 + 0.35 * pulse) * (0.4 + 0.6 * smoothstep(-0.3, 1.0, b.y));
        col += mix(tint, vec3(1.0), 0.4) * exp(-abs(bell) * 12.0) * step(-0.3, b.y) * (0.5 + 0.7 * pulse);
        col += tint * exp(-max(bell, 0.0) * 2.5) * 0.12 * (0.5 + pulse);
        // tentacles hang below the rim and wave
        for (int k = 0; k < 5; ++k) {
            float fk = float(k) - 2.0;
            float depth = -q.y;
            float x0 = fk * 0.32 * (1.0 - pulse * 0.15);
            float sway = sin(depth * 2.5 - TIME * 2.0 + fk + fi) * 0.12 * depth;
            float dx = abs(q.x - x0 - sway);
            float len = 3.0 + 0.6 * h11(fi * 5.0 + fk);
            float m = step(0.0, depth) * smoothstep(len, 0.0, depth);
            col += tint * m * exp(-dx * 22.0) * 0.35;
        }
    }
    return tm(col * 1.2);
}
