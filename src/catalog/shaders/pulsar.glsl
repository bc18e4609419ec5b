vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Perspective scroll: everything slides towards a horizon and narrows.
    const float H = 0.95, B = -0.75, K = 0.988;
    vec2 q = vec2(p.x / 0.994, H - (H - p.y) / K);
    vec3 c = PREVP(q) * 0.993;
    if (p.y < B - 0.02) c = vec3(0.0);

    // A new ridge line about every eighth frame, hiding what lies behind it.
    if (fract(TIME * 7.5) < 0.125) {
        float m = abs(p.x) / 1.05;
        float env = smoothstep(1.0, 0.2, m);
        float n = noise(vec2(p.x * 14.0, TIME * 9.0)) - 0.5;
        float h = env * (SP(m * 0.85) * 0.42 + n * (0.03 + HIGH * 0.14)) + n * 0.01;
        float d = p.y - (B + h);
        float fade = smoothstep(1.3, 1.0, m);
        if (p.y > B - 0.02 && d < 0.0) c *= 1.0 - fade;
        vec3 lc = mix(PAL(0.25), vec3(1.0), 0.5);
        c += lc * fade * smoothstep(0.012, 0.0, abs(d)) * (1.6 + env * 1.2);
    }
    return min(c, vec3(3.0));
}
