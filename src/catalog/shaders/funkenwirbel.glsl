vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Trails turn with the sparks and fade.
    vec2 q = rot(-(0.008 + BASS * 0.03)) * p * 0.998;
    vec3 c = PREVP(q) * 0.94;

    // The 60 sparks sit in lanes by radius; only the nine nearest lanes can reach this pixel.
    float sc = 0.85 + BASS * 0.3;
    const float R0 = 0.12, LANE = 0.0125;
    float r = length(p) / sc;
    float i0 = floor((r - R0) / LANE);
    float sz = 0.003 + HIGH * 0.006;
    vec3 add = vec3(0.0);
    // a loop over the existing lanes only, so pixels beyond the outer lane skip it entirely
    int k0 = int(max(i0 - 4.0, 0.0)), k1 = int(min(i0 + 4.0, 59.0));
    for (int k = k0; k <= k1; ++k) {
        float fi = float(k);
        float h = fract(fi * 0.618034 + 0.37);
        float h2 = fract(fi * 0.754878 + fi * fi * 0.0137);
        float rad = (R0 + (fi + 0.5 + (h - 0.5) * 0.8) * LANE) * sc;
        float a = MT * (0.5 + h2 * 0.8) / (0.3 + rad) + h * TAU;
        vec2 d = p - rad * vec2(cos(a), sin(a));
        float dd = dot(d, d);
        add += PAL(h * 0.7 + h2 * 0.3) * sz * sz / (dd + sz * sz * 0.5);
    }
    c += min(add, vec3(2.0)) * 0.6;
    return min(c, vec3(3.0));
}
