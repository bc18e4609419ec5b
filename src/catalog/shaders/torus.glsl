float mapT(vec3 p) {
    float a = atan(p.z, p.x + 1e-7);
    vec2 q = vec2(length(p.xz) - 1.25, p.y);
    q = rot(a * 1.5 + MT * 0.6) * q;
    vec2 b = vec2(0.36 + BASS * 0.22, 0.09);
    vec2 d = abs(q) - b;
    return (length(max(d, 0.0)) + min(max(d.x, d.y), 0.0) - 0.06) * 0.7;
}

vec3 vis(vec2 p, vec2 uv) {
    float a = TIME * 0.2 + MOUSE.x * 2.0;
    float el = 0.55 + MOUSE.y * 0.7;
    vec3 ro = vec3(cos(a) * cos(el), sin(el), sin(a) * cos(el)) * 3.7;
    vec3 rd = rayDir(p, ro, vec3(0.0), 1.8);
    float t = 2.0, dmin = 9.0;
    bool hit = false;
    for (int i = 0; i < 90; ++i) {
        float d = mapT(ro + rd * t);
        dmin = min(dmin, d);
        if (d < 0.001) { hit = true; break; }
        t += d;
        if (t > 7.5) break;
    }
    vec3 bg = PAL(0.8) * 0.03 * (1.2 - length(p) * 0.5);
    if (!hit) return bg + PAL(0.1) * 0.6 * exp(-dmin * 10.0) * (0.2 + LVL * 1.2);
    vec3 pos = ro + rd * t;
    vec2 e = vec2(0.002, -0.002);
    vec3 n = normalize(e.xyy * mapT(pos + e.xyy) + e.yyx * mapT(pos + e.yyx) + e.yxy * mapT(pos + e.yxy) + e.xxx * mapT(pos + e.xxx));
    vec3 r = reflect(rd, n);
    // Palette sky with a horizon and two soft lights, for the chrome to mirror.
    vec3 env = mix(PAL(0.75) * 0.03, PAL(0.2) * 0.5, smoothstep(-0.1, 1.0, r.y));
    env += PAL(0.1) * 0.9 * exp(-abs(r.y) * 14.0);
    env += vec3(1.0) * 2.0 * smoothstep(0.88, 0.97, dot(r, normalize(vec3(0.5, 0.8, 0.3))));
    env += PAL(0.6) * 1.2 * smoothstep(0.75, 0.95, dot(r, normalize(vec3(-0.7, 0.3, -0.4))));
    float fr = pow(1.0 - clamp(-dot(n, rd), 0.0, 1.0), 3.0);
    vec3 col = env * mix(PAL(0.0) * 1.1, vec3(1.0), 0.2 + 0.6 * fr);
    return tm(col);
}
