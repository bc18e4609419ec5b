float mapF(vec3 p) {
    float tube = 0.8 - length(p.xy);
    p.z = mod(p.z, 2.0) - 1.0;
    vec3 off = vec3(1.0, 0.7, 0.5) * (1.0 + BASS * 0.25);
    float s = 1.0;
    for (int i = 0; i < 5; ++i) {
        p = abs(p) - off;
        p.xy = rot(0.785) * p.xy;
        p.yz = rot(0.25) * p.yz;
        p *= 1.6;
        s *= 1.6;
    }
    float d = (length(p.xz) - 0.12) / s;
    return max(d, tube);
}

vec3 vis(vec2 p, vec2 uv) {
    vec3 ro = vec3(MOUSE * 0.25, MT * 0.7);
    vec3 rd = normalize(vec3(p, 1.4));
    rd.xy = rot(MT * 0.12) * rd.xy;
    float gs = 0.0, ga = 0.0;
    float t = 0.05;
    for (int i = 0; i < 44; ++i) {
        vec3 pos = ro + rd * t;
        float d = mapF(pos);
        // Glow where the ray grazes the fractal; the ray passes through instead of stopping.
        float g = 0.006 / (0.006 + abs(d) * abs(d) * 400.0);
        // the palette is looked up once per pixel from the glow-weighted position
        g *= exp(-t * 0.42);
        gs += g;
        ga += g * (pos.z * 0.12 + length(pos.xy) * 0.3);
        t += max(abs(d) * 0.9, 0.035);
        if (t > 6.5) break;
    }
    vec3 col = PAL(ga / max(gs, 1e-4)) * gs * 0.22 * (0.7 + BASS * 0.9);
    return tm(col * 1.6 + PAL(0.75) * 0.02);
}
