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
    vec3 col = vec3(0.0);
    float t = 0.05;
    for (int i = 0; i < 72; ++i) {
        vec3 pos = ro + rd * t;
        float d = mapF(pos);
        // Glow where the ray grazes the fractal; the ray passes through instead of stopping.
        float g = 0.006 / (0.006 + abs(d) * abs(d) * 400.0);
        col += PAL(pos.z * 0.12 + length(pos.xy) * 0.3) * g * exp(-t * 0.4) * 0.16;
        t += max(abs(d) * 0.7, 0.02);
        if (t > 8.0) break;
    }
    col *= 0.7 + BASS * 0.9;
    return tm(col * 1.6 + PAL(0.75) * 0.02);
}
