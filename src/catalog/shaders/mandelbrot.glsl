vec3 vis(vec2 p, vec2 uv) {
    // zoom breathes between 1 and e^-9 around a deep spiral
    float ph = 0.5 - 0.5 * cos(MT * 0.035);
    float zoom = 1.4 * exp(-9.0 * ph);
    vec2 c = vec2(-0.743643887, 0.131825904) + rot(MT * 0.05) * p * zoom;
    vec2 z = vec2(0.0), dz = vec2(0.0);
    float n = 0.0, trap = 1e9;
    bool esc = false;
    for (int i = 0; i < 180; ++i) {
        dz = 2.0 * vec2(z.x * dz.x - z.y * dz.y, z.x * dz.y + z.y * dz.x) + vec2(1.0, 0.0);
        z = vec2(z.x * z.x - z.y * z.y, 2.0 * z.x * z.y) + c;
        float m = dot(z, z);
        trap = min(trap, length(z));
        if (m > 256.0) { esc = true; break; }
        n += 1.0;
    }
    vec3 col = PAL(0.75) * 0.025;
    if (esc) {
        float m = dot(z, z);
        float sn = n - log2(log2(m)) + 4.0;
        // distance to the set in screen units keeps the filaments sharp at every zoom
        float de = 0.5 * sqrt(m) * log(m) / max(length(dz), 1e-20) / zoom;
        float edge = exp(-de * 18.0);
        vec3 band = PAL(sqrt(sn) * 0.25 + MT * 0.02);
        col += band * (0.03 + 1.1 * edge);
        col += vec3(1.0) * 0.5 * exp(-de * 120.0);
        col += PAL(0.2) * (0.1 + BASS * 0.9) * exp(-trap * 4.0) * sqrt(edge);
    } else {
        col += PAL(0.1) * (0.1 + BASS * 0.8) * exp(-trap * 6.0);
    }
    return tm(col * 1.2);
}
