vec3 vis(vec2 p, vec2 uv) {
    const float H = 0.12;
    vec2 mp = vec2(0.45 * ASPECT, 0.58);
    float md = length(p - mp);
    float sky = clamp((p.y - H) * 1.2, 0.0, 1.0);
    vec3 col = mix(PAL(0.25) * 0.16, PAL(0.75) * 0.02, sqrt(sky));
    vec2 sg = floor(p * 90.0);
    col += vec3(0.7) * step(0.993, h21(sg)) * (0.6 + 0.4 * sin(TIME * 2.0 + h21(sg + 3.1) * 40.0)) * step(H, p.y) * smoothstep(0.15, 0.35, md);
    col += PAL(0.5) * 0.22 * exp(-md * 3.0);
    col = mix(col, vec3(0.92, 0.96, 1.0) * (0.9 - 0.2 * fbm(p * 14.0)), smoothstep(0.115, 0.108, md));

    float px = abs(p.x - mp.x);
    for (int i = 0; i < 7; ++i) {
        float fi = float(i);
        float z = (fi + 1.0) / 7.0;
        float base = H - 0.02 - 1.12 * pow(z, 1.7) + 0.05;
        float s = SP(0.04 + fi * 0.1);
        float amp = (0.004 + s * 0.09) * (0.3 + 1.6 * z);
        float x = p.x / (0.25 + z);
        float y = base + amp * (sin(x * 5.0 + MT * (0.7 + 0.1 * fi) + fi * 2.3) + 0.45 * sin(x * 11.0 - MT * 1.3 + fi));
        if (p.y < y) {
            float dep = (y - p.y) / (0.05 + 0.3 * z);
            vec3 w = PAL(0.0) * (0.1 + 0.1 * exp(-dep * 2.0)) * (1.1 - 0.6 * z);
            float wid = 0.03 + 0.16 * z;
            float path = exp(-px / wid) * exp(-dep * 1.5);
            float gl = smoothstep(0.6, 0.95, noise(vec2(p.x * 90.0 / (0.3 + z), dep * 6.0 + TIME * 2.0 + fi * 7.0)) * noise(vec2(p.x * 23.0, dep * 25.0 - TIME)) * 1.6);
            col = w + vec3(0.8, 0.9, 1.0) * path * (0.1 + gl * 1.4);
        }
        float crest = smoothstep(0.0025 + 0.004 * z, 0.0, abs(p.y - y));
        col += mix(PAL(0.5 + fi * 0.03), vec3(1.0), exp(-px / (0.05 + 0.3 * z)) * 0.7) * crest * (0.2 + 1.2 * s) * (0.4 + 0.6 * exp(-px * 1.5));
    }
    return tm(col * 1.3);
}
