float mapM(vec3 p) {
    float d = 9.0;
    for (int i = 0; i < 6; ++i) {
        float fi = float(i);
        vec3 c = vec3(sin(MT * (0.5 + fi * 0.13) + fi * 1.7), sin(MT * (0.41 + fi * 0.07) + fi * 2.9) * 0.8,
                      cos(MT * (0.37 + fi * 0.11) + fi * 0.9)) * 0.7;
        float r = 0.28 + SP(fi / 6.0 * 0.7 + 0.03) * 0.32;
        d = smin(d, length(p - c) - r, 0.5);
    }
    return d;
}

vec3 vis(vec2 p, vec2 uv) {
    float a = TIME * 0.15 + MOUSE.x * 2.0;
    float el = 0.25 + MOUSE.y * 0.8;
    vec3 ro = vec3(cos(a) * cos(el), sin(el), sin(a) * cos(el)) * 3.3;
    vec3 rd = rayDir(p, ro, vec3(0.0), 1.8);
    vec3 bg = PAL(0.75) * 0.05 * (1.2 - length(p) * 0.5) + PAL(0.1) * 0.04 * (p.y + 1.0);
    float t = 1.5;
    bool hit = false;
    for (int i = 0; i < 80; ++i) {
        float d = mapM(ro + rd * t);
        if (d < 0.001) { hit = true; break; }
        t += d;
        if (t > 7.0) break;
    }
    if (!hit) return bg;
    vec3 pos = ro + rd * t;
    vec2 e = vec2(0.002, -0.002);
    vec3 n = normalize(e.xyy * mapM(pos + e.xyy) + e.yyx * mapM(pos + e.yyx) + e.yxy * mapM(pos + e.yxy) + e.xxx * mapM(pos + e.xxx));
    vec3 L = normalize(vec3(0.5, 0.8, 0.3));
    float dif = max(dot(n, L), 0.0);
    // Light leaking through thin parts: probe the field a little inside.
    float sss = clamp(mapM(pos - n * 0.25) / -0.25, 0.0, 1.0);
    float nv = clamp(-dot(n, rd), 0.0, 1.0);
    vec3 base = PAL(0.15 + dot(pos, vec3(0.15)) + TIME * 0.02);
    base *= base;
    vec3 col = base * (0.08 + dif * 0.6);
    col += PAL(0.3) * (1.0 - sss) * 0.6 * (0.5 + 0.5 * nv);
    col += vec3(1.0) * pow(max(dot(reflect(rd, n), L), 0.0), 48.0) * 0.9;
    col += PAL(0.6) * pow(1.0 - nv, 3.0) * 1.0;
    return tm(col * 1.3);
}
