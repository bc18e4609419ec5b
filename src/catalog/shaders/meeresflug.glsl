float seaH(vec2 x, int oct) {
    float h = 0.0, a = 0.32 * (0.6 + BASS * 0.55), f = 0.3, ch = 4.0;
    float t = 1.0 + TIME * 0.8;
    x.x *= 0.75;
    for (int i = 0; i < 5; ++i) {
        if (i >= oct) break;
        for (int j = 0; j < 2; ++j) {
            vec2 q = x * f + (j == 0 ? t : -t);
            q += noise(q) * 2.0 - 1.0;
            vec2 w = 1.0 - abs(sin(q)), s = abs(cos(q));
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
    float t = 0.0;
    float far = 60.0;
    bool hit = false;
    for (int i = 0; i < 64; ++i) {
        vec3 q = ro + rd * t;
        float d = q.y - seaH(q.xz, 2);
        if (d < 0.002 * t) { hit = true; break; }
        t += d * 0.8;
        if (t > far) break;
    }
    if (!hit) t = min(t, far);
    vec3 q = ro + rd * t;
    vec2 e = vec2(0.02 + t * 0.002, 0.0);
    float h = seaH(q.xz, 5);
    vec3 n = normalize(vec3(h - seaH(q.xz + e.xy, 5), e.x, h - seaH(q.xz + e.yx, 5)));
    float fres = pow(1.0 - max(dot(n, -rd), 0.0), 3.0) * 0.7 + 0.08;
    vec3 refl = sky(reflect(rd, n));
    vec3 deep = PAL(0.75) * 0.06 + PAL(0.5) * 0.12 * max(n.y, 0.0);
    vec3 sea = mix(deep, refl, fres);
    sea += PAL(0.5) * 0.12 * max(q.y - 0.3, 0.0) * exp(-t * 0.05);
    float foam = smoothstep(0.5, 0.85, h / (0.6 + BASS * 0.55)) * (0.1 + HIGH * 0.8);
    sea += vec3(0.9, 0.85, 0.8) * foam * exp(-t * 0.06);
    return mix(sea, col, smoothstep(far * 0.35, far, t));
}
