vec3 vis(vec2 p, vec2 uv) {
    vec3 rd = normalize(vec3(p * 0.45, 1.0));
    mat2 ra = rot(0.5 + MOUSE.x * 0.9 + TIME * 0.013), rb = rot(0.35 - MOUSE.y * 0.9);
    rd.xz = ra * rd.xz;
    rd.yz = rb * rd.yz;
    vec3 ro = vec3(1.0, 0.5, 0.5) + vec3(0.6, 0.35, -1.0) * MT * 0.012;
    float fold = 0.53 + BASS * 0.035;
    float s = 0.1, fade = 1.0;
    vec3 col = vec3(0.0);
    for (int r = 0; r < 14; ++r) {
        vec3 q = ro + s * 0.5 * rd;
        q = abs(vec3(0.85) - mod3(q, 1.7));
        float pl = 0.0, a = 0.0;
        for (int i = 0; i < 13; ++i) {
            q = abs(q) / max(dot(q, q), 1e-4) - fold;
            float l = length(q);
            a += abs(l - pl);
            pl = l;
        }
        // dark matter: thick regions absorb the farther layers
        float dm = max(0.0, 0.3 - a * a * 0.001);
        if (r > 5) fade *= 1.0 - dm;
        a = min(a * a * a, 6e4);
        col += fade * (PAL(s * 0.9 + 0.55) * (0.8 + HIGH * 1.6) * a * 0.0000135 + vec3(0.004) * s);
        fade *= 0.76;
        s += 0.1;
    }
    float l = length(col);
    col = mix(vec3(l), col, 0.85);
    return tm(col * 1.1);
}
