vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Curl of a smooth stream function: a divergence-free flow that swirls the ink.
    float t = TIME * 0.25;
    float A = 1.9 * p.x + 0.4 * t, B = 2.3 * p.y - 0.3 * t;
    float C = 3.1 * p.x - 2.4 * p.y + 0.5 * t, D = 1.3 * p.x + 3.7 * p.y + 0.35 * t;
    float px = 1.9 * cos(A) * cos(B) + 1.55 * cos(C) - 0.455 * sin(D);
    float py = -2.3 * sin(A) * sin(B) - 1.2 * cos(C) - 1.295 * sin(D);
    vec2 vel = vec2(py, -px);
    vec3 c = PREVP(p - vel * (0.0025 + BASS * 0.008)) * 0.993;

    for (int i = 0; i < 6; ++i) {
        float fi = float(i);
        float a = MT * (0.3 + fi * 0.05) + fi * TAU / 6.0;
        vec2 sp = vec2(cos(a) * 0.62 * ASPECT, sin(a * 1.3 + fi) * 0.6);
        float s = SP(0.04 + fi * 0.15);
        float d = length(p - sp);
        float w = smoothstep(0.025 + s * 0.06, 0.0, d) * (0.3 + s * 0.7);
        c = mix(c, PAL(fi / 6.0) * 1.2, clamp(w, 0.0, 1.0));
    }
    float dm = length(p - MOUSE);
    c = mix(c, mix(PAL(0.5 + TIME * 0.05), vec3(1.0), 0.3) * 1.2, smoothstep(0.07, 0.0, dm) * 0.7);
    return c;
}
