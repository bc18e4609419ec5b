vec3 vis(vec2 p, vec2 uv) {
    mat2 r1 = rot(MT * 0.35), r2 = rot(MT * 0.23 + BASS * 0.4);
    mat2 r3 = rot(TIME * 0.08 + MOUSE.x * 1.5), r4 = rot(0.45 + MOUSE.y * 1.2);
    float size = 1.2 + BASS * 0.18;
    // The rotation is linear: turn the four axes once, each vertex is a signed sum of them.
    mat4 M = mat4(1.0);
    for (int a = 0; a < 4; ++a) {
        vec4 v = M[a];
        v.xw = r1 * v.xw;
        v.yw = r2 * v.yw;
        v.zw = r1 * v.zw;
        v.xz = r3 * v.xz;
        v.yz = r4 * v.yz;
        M[a] = v;
    }
    vec2 P[16];
    float K[16];
    vec2 lo = vec2(9.0), hi = vec2(-9.0);
    vec3 col = PAL(0.6) * 0.03 * (1.2 - length(p) * 0.5);
    for (int i = 0; i < 16; ++i) {
        vec4 v = M * vec4((i & 1) != 0 ? -1.0 : 1.0, (i & 2) != 0 ? -1.0 : 1.0, (i & 4) != 0 ? -1.0 : 1.0, (i & 8) != 0 ? -1.0 : 1.0);
        float k4 = 1.0 / (3.2 - v.w);
        vec3 p3 = v.xyz * k4;
        P[i] = p3.xy * (2.0 / (2.6 - p3.z)) * size;
        K[i] = k4;
        lo = min(lo, P[i]);
        hi = max(hi, P[i]);
        col += vec3(0.005 * k4 / (length(p - P[i]) + 0.006));
    }
    if (all(greaterThan(p, lo - 0.1)) && all(lessThan(p, hi + 0.1))) {
        int k = 0;
        for (int i = 0; i < 16; ++i) {
            for (int b = 0; b < 4; ++b) {
                int j = i ^ (1 << b);
                if (j < i) continue;
                float fk = float(k);
                k++;
                vec2 a = P[i], c = P[j];
                if (any(lessThan(p, min(a, c) - 0.1)) || any(greaterThan(p, max(a, c) + 0.1))) continue;
                float d = sdSeg(p, a, c);
                float w = 0.006 * (K[i] + K[j]);
                float s = SP(fk / 32.0 * 0.85 + 0.02);
                col += PAL(fk / 32.0 + float(b) * 0.1) * w / (d + w) * (0.2 + s * 0.9) * smoothstep(0.1, 0.035, d);
            }
        }
    }
    return tm(col);
}
