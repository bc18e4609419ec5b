
vec4 cellVert(int n) {
    int k = n / 4, s = n - 4 * k;
    ivec2 axes = k == 0 ? ivec2(0, 1) : k == 1 ? ivec2(0, 2) : k == 2 ? ivec2(0, 3)
               : k == 3 ? ivec2(1, 2) : k == 4 ? ivec2(1, 3) : ivec2(2, 3);
    vec4 v = vec4(0.0);
    v[axes.x] = (s & 1) != 0 ? -1.0 : 1.0;
    v[axes.y] = (s & 2) != 0 ? -1.0 : 1.0;
    return v;
}

vec3 vis(vec2 p, vec2 uv) {
    mat2 r1 = rot(MT * 0.3), r2 = rot(MT * 0.21 + BASS * 0.3);
    mat2 r3 = rot(TIME * 0.07 + MOUSE.x), r4 = rot(0.5 + MOUSE.y);
    vec2 P[24];
    float K[24];
    vec2 lo = vec2(1e9), hi = vec2(-1e9);
    for (int i = 0; i < 24; ++i) {
        vec4 v = cellVert(i);
        v.xw = r1 * v.xw;
        v.yz = r2 * v.yz;
        v.zw = r1 * v.zw;
        v.xz = r3 * v.xz;
        v.yz = r4 * v.yz;
        float k4 = 1.0 / (3.0 - v.w);
        vec3 p3 = v.xyz * k4;
        P[i] = p3.xy * (1.8 / (3.0 - p3.z)) * (1.9 + BASS * 0.15);
        K[i] = k4;
        lo = min(lo, P[i]);
        hi = max(hi, P[i]);
    }
    vec3 col = PAL(0.6) * 0.03;
    bool nearFigure = all(greaterThan(p, lo - 0.12)) && all(lessThan(p, hi + 0.12));
    for (int k = 0; k < 96 && nearFigure; ++k) {
        ivec2 e = EDGES[k];
        vec2 a = P[e.x], b = P[e.y];
        if (any(lessThan(p, min(a, b) - 0.12)) || any(greaterThan(p, max(a, b) + 0.12))) continue;
        float d = sdSeg(p, a, b);
        float w = 0.0035 * (K[e.x] + K[e.y]);
        float s = spec(float(k) / 96.0 * 0.85);
        col += PAL(float(k) / 96.0) * w / (d + w) * (0.15 + s * 0.6) * smoothstep(0.12, 0.05, d);
    }
    for (int i = 0; i < 24; ++i) col += vec3(0.0035 * K[i] / (length(p - P[i]) + 0.005));
    return tm(col);
}
