vec3 vis(vec2 p, vec2 uv) {
    const float H = 0.05;
    vec2 mp = vec2(0.42 * ASPECT, 0.55);
    float md = length(p - mp);
    vec3 col = mix(PAL(0.0) * 0.12, vec3(0.0), clamp((p.y - H) * 1.1, 0.0, 1.0));
    vec2 sg = floor(p * 70.0);
    col += vec3(0.8) * step(0.985, h21(sg)) * (0.5 + 0.5 * sin(TIME * 2.0 + h21(sg + 3.1) * 40.0)) * step(H, p.y) * smoothstep(0.12, 0.2, md);
    col += PAL(0.5) * 0.28 * exp(-md * 3.5) + vec3(0.9, 0.95, 1.0) * smoothstep(0.125, 0.115, md) * (0.85 - 0.2 * noise(p * 30.0));
    for (int i = 0; i < 7; ++i) {
        float fi = float(i);
        float z = 1.0 / (1.0 + fi * 0.75);
        float base = H - 1.1 * (1.0 - z) - 0.03;
        float s = SP(0.05 + fi * 0.1);
        float amp = (0.01 + s * 0.09) * (1.4 - z);
        float x = p.x / z;
        float y = base + amp * (sin(x * 3.0 + MT * (0.6 + 0.1 * fi) + fi * 2.3) + 0.4 * sin(x * 7.1 - MT * 1.1 + fi)) + 0.01 * z;
        if (p.y < y) {
            float dep = y - p.y;
            vec3 w = mix(PAL(0.25 + fi * 0.04), PAL(0.0), 0.5) * (0.05 + 0.04 * fi / 6.0) * exp(-dep * 6.0);
            float path = exp(-abs(p.x - mp.x) * (4.0 + 3.0 * fi) / (0.3 + dep * 3.0));
            float gl = step(0.75, noise(vec2(x * 25.0, dep * 60.0 + TIME * 2.0 + fi)));
            col = w + vec3(0.85, 0.95, 1.0) * path * (0.12 + gl * 0.7) * exp(-dep * 10.0);
        }
        col += PAL(0.3 + fi * 0.05) * (0.5 + s) * smoothstep(0.006 * z + 0.002, 0.0, abs(p.y - y)) * (0.35 + 0.5 * exp(-abs(p.x - mp.x) * 2.0));
    }
    return tm(col * 1.2);
}
