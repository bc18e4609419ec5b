float seaH(vec2 x, int oct) {
    float h = 0.0, a = 0.32 * (0.6 + BASS * 0.55), f = 0.3, ch = 4.0;
    float t = 1.0 + TIME * 0.8;
    x.x *= 0.75;
    for (int i = 0; i < 5; ++i) {
        if (i >= oct) break;
        for (int j = 0; j < 2; ++j) {
            vec2 q = x * f + (j == 0 ? t : -t);
            q += noise(q) * 2.0 - 1.0;
            vec2 sn = sin(q), w = 1.0 - abs(sn), s = sqrt(max(1.0 - sn * sn, 0.0));
            w = mix(w, s, w);
            h += a * pow(max(1.0 - pow(w.x * w.y, 0.65), 0.0), ch);
        }
        x = mat2(1.6, 1.2, -1.2, 1.6) * x;
        f *= 1.9;
        a *= 0.22;
        ch = mix(ch, 1.0, 0.2);
    }
    return h;
}

vec3 sky(vec3 rd) {
    float y = max(rd.y, 0.0);
    vec3 sd = normalize(vec3(0.0, 0.12, 1.0));
    float sun = max(dot(rd, sd), 0.0);
    vec3 c = mix(PAL(0.08) * 0.9, PAL(0.85) * 0.35, pow(y, 0.45));
    c = mix(c, PAL(0.5) * 0.9, exp(-y * 12.0) * 0.6);
    c += PAL(0.45) * (pow(sun, 10.0) * 0.35 + pow(sun, 600.0) * 3.0);
    return c;
}

vec3 vis(vec2 p, vec2 uv) {
    float z = MT * 2.5;
    vec3 ro = vec3(MOUSE.x * 2.0, 1.3 + MOUSE.y * 1.0, z);
    vec3 rd = rayDir(p, ro, ro + vec3(sin(TIME * 0.1) * 0.3, -0.22, 1.0), 1.7);
    vec3 col = sky(rd);
    if (rd.y > -0.01) return col;
    // bracket the sea between its crest plane and the fog distance, then refine by secant
    float far = 60.0;
    float t0 = max((ro.y - 1.0) / -rd.y, 0.0), t1 = min(ro.y / -rd.y, far);
    float h0 = max(ro.y + rd.y * t0 - 0.5, 0.01), h1 = 0.0, t = t1;
    for (int i = 0; i < 7; ++i) {
        if (i > 0) t = mix(t0, t1, h0 / (h0 - h1));
        vec3 q = ro + rd * t;
        float d = q.y - seaH(q.xz, 1);
        if (i == 0 && d > 0.0) return col;
        if (d <= 0.0) { t1 = t; h1 = d; } else { t0 = t; h0 = d; }
    }
    vec3 q = ro + rd * t;
    vec2 e = vec2(0.02 + t * 0.002, 0.0);
    vec3 hs;
    for (int k = 0; k < 3; ++k) hs[k] = seaH(q.xz + (k == 1 ? e.xy : k == 2 ? e.yx : e.yy), 5);
    float h = hs.x;
    vec3 n = normalize(vec3(h - hs.y, e.x, h - hs.z));
    float fres = pow(1.0 - max(dot(n, -rd), 0.0), 3.0) * 0.7 + 0.08;
    vec3 refl = sky(reflect(rd, n));
    vec3 deep = PAL(0.75) * 0.06 + PAL(0.5) * 0.12 * max(n.y, 0.0);
    vec3 sea = mix(deep, refl, fres);
    sea += PAL(0.5) * 0.12 * max(q.y - 0.3, 0.0) * exp(-t * 0.05);
    float foam = smoothstep(0.5, 0.85, h / (0.6 + BASS * 0.55)) * (0.1 + HIGH * 0.8);
    sea += vec3(0.9, 0.85, 0.8) * foam * exp(-t * 0.06);
    return mix(sea, col, smoothstep(far * 0.35, far, t));
}
