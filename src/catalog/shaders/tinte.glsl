vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Curl of a noise field: divergence-free flow that curls the ink.
    vec2 np = p * 1.6 + vec2(TIME * 0.05, -TIME * 0.03);
    const float e = 0.04;
    float dx = noise(np + vec2(e, 0.0)) - noise(np - vec2(e, 0.0));
    float dy = noise(np + vec2(0.0, e)) - noise(np - vec2(0.0, e));
    vec2 vel = vec2(dy, -dx) / (2.0 * e);
    vec2 q = p - vel * (0.004 + BASS * 0.012);
    vec3 c = PREVP(q) * 0.992;

    for (int i = 0; i < 6; ++i) {
        float fi = float(i);
        float a = MT * (0.35 + fi * 0.04) + fi * TAU / 6.0;
        vec2 sp = vec2(cos(a) * 0.55 * ASPECT * 0.8, sin(a * 1.3) * 0.55);
        float s = SP(0.05 + fi * 0.15);
        float d = length(p - sp);
        float w = smoothstep(0.02 + s * 0.07, 0.0, d) * (0.15 + s * 0.8);
        c = mix(c, PAL(fi / 6.0) * 1.2, clamp(w, 0.0, 1.0));
    }
    float dm = length(p - MOUSE);
    c = mix(c, mix(PAL(0.5 + TIME * 0.05), vec3(1.0), 0.3), smoothstep(0.05, 0.0, dm) * 0.6);
    return c;
}
