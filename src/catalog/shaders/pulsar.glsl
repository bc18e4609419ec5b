vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Perspective scroll: everything slides towards a horizon and narrows.
    const float H = 0.92, B = -0.72, K = 0.986;
    vec2 q = vec2(p.x / K, H - (H - p.y) / K);
    vec3 c = PREVP(q) * 0.995;
    if (p.y < B - 0.02) c = vec3(0.0);

    // A new ridge line about every eighth frame, hiding what lies behind it.
    if (fract(TIME * 7.5) < 0.125) {
        float m = abs(p.x) / 0.95;
        float env = smoothstep(1.0, 0.25, m);
        float n = noise(vec2(p.x * 14.0, TIME * 9.0)) - 0.5;
        float h = env * (SP(m * 0.85) * 0.36 + n * (0.02 + HIGH * 0.12)) + n * 0.008 * step(m, 1.0);
        float top = B + h;
        float d = p.y - top;
        if (m < 1.15) {
            if (p.y > B - 0.02 && d < 0.0) c = vec3(0.0);
            vec3 lc = mix(PAL(0.25), vec3(1.0), 0.6) * smoothstep(1.15, 0.9, m);
            c += lc * smoothstep(0.007, 0.0, abs(d)) * (0.85 + env * 0.4);
        }
    }
    c += PAL(0.6) * 0.02 * smoothstep(0.5, 1.2, p.y) ;
    return min(c, vec3(2.0));
}
