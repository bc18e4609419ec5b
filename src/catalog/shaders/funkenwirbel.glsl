vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Trails turn with the sparks and fade.
    vec2 q = rot(-(0.008 + BASS * 0.03)) * p * 0.998;
    vec3 c = PREVP(q) * 0.94;

    vec3 add = vec3(0.0);
    float sz = 0.004 + HIGH * 0.01;
    for (int i = 0; i < 60; ++i) {
        float fi = float(i);
        float h = h11(fi + 0.37);
        float h2 = h11(fi * 1.93 + 4.1);
        float rad = (0.15 + h * 0.7) * (0.85 + BASS * 0.3);
        float a = MT * (0.6 + h2 * 0.9) / (0.4 + h) + fi * 2.39996;
        vec2 sp = rad * vec2(cos(a), sin(a));
        vec2 d = p - sp;
        if (abs(d.x) > 0.1 || abs(d.y) > 0.1) continue;
        float dd = dot(d, d);
        add += PAL(h * 0.7 + h2 * 0.3) * sz * sz / (dd + sz * sz * 0.5);
    }
    c += min(add, vec3(2.0)) * 0.6;
    return min(c, vec3(3.0));
}
