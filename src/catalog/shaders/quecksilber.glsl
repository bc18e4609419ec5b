float mapQ(vec3 q) {
    float d = 1e3;
    float t = MT * 0.35;
    for (int i = 0; i < 6; ++i) {
        float fi = float(i);
        vec3 c = vec3(sin(t * (0.7 + fi * 0.13) + fi * 2.1) * 0.8,
                      sin(t * (0.9 + fi * 0.11) + fi * 1.3) * 0.45,
                      cos(t * (0.6 + fi * 0.17) + fi * 2.9) * 0.55);
        c *= 1.0 - BASS * 0.12;
        float r = 0.3 + 0.08 * sin(fi * 1.7) + BASS * 0.1;
        d = smin(d, length(q - c) - r, 0.32);
    }
    // fine ripples on the surface with treble
    d += HIGH * 0.01 * sin(q.x * 17.0 + TIME * 6.0) * sin(q.y * 15.0 - TIME * 5.0) * sin(q.z * 16.0);
    return d;
}

vec3 studio(vec3 d) {
    vec3 c = mix(PAL(0.75) * 0.1 + 0.04, vec3(0.25) + PAL(0.3) * 0.2, smoothstep(-0.5, 0.7, d.y));
    c += PAL(0.2) * 0.25 * smoothstep(0.15, 0.0, abs(d.y + 0.05));
    c += vec3(1.0) * smoothstep(0.2, 0.17, abs(d.x)) * smoothstep(0.6, 0.8, d.y) * 1.6;
    c += PAL(0.1) * smoothstep(0.3, 0.26, abs(d.y - 0.2)) * smoothstep(0.55, 0.75, d.z) * 1.4;
    c += PAL(0.55) * smoothstep(0.3, 0.26, abs(d.y - 0.15)) * smoothstep(0.55, 0.75, -d.x) * 1.2;
    return c;
}

vec3 vis(vec2 p, vec2 uv) {
    float ca = TIME * 0.05 + MOUSE.x * 1.8;
    float el = 0.25 + MOUSE.y * 0.6;
    vec3 ro = vec3(sin(ca) * cos(el), sin(el), -cos(ca) * cos(el)) * 2.5;
    vec3 rd = rayDir(p, ro, vec3(0.0), 2.0);
    vec3 col = studio(rd) * 0.15 * (1.0 - length(p) * 0.35);
    float t = 0.5;
    bool hit = false;
    for (int i = 0; i < 80; ++i) {
        float d = mapQ(ro + rd * t);
        if (d < 0.001) { hit = true; break; }
        t += d * 0.9;
        if (t > 10.0) break;
    }
    if (hit) {
        vec3 q = ro + rd * t;
        vec2 e = vec2(0.002, 0.0);
        vec3 n = normalize(vec3(mapQ(q + e.xyy) - mapQ(q - e.xyy), mapQ(q + e.yxy) - mapQ(q - e.yxy), mapQ(q + e.yyx) - mapQ(q - e.yyx)));
        vec3 rf = reflect(rd, n);
        float fres = 0.6 + 0.4 * pow(1.0 - max(dot(n, -rd), 0.0), 4.0);
        col = studio(rf) * fres * vec3(0.9, 0.93, 1.0) * (0.75 + 0.25 * n.y);
    }
    return tm(col * 1.3);
}
