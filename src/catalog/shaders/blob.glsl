float mapB(vec3 p) {
    float n = noise3(p * 1.15 + vec3(0.0, MT * 0.35, MT * 0.2)) - 0.5;
    float r = 1.0 + n * (0.3 + BASS * 0.4);
    r += sin(p.x * 14.0 + MT * 2.0) * sin(p.y * 13.0 - MT * 1.7) * sin(p.z * 12.0) * HIGH * 0.025;
    return (length(p) - r) * 0.6;
}

vec3 vis(vec2 p, vec2 uv) {
    float a = TIME * 0.15 + MOUSE.x * 2.0;
    float el = 0.3 + MOUSE.y * 0.8;
    vec3 ro = vec3(cos(a) * cos(el), sin(el), sin(a) * cos(el)) * 3.1;
    vec3 rd = rayDir(p, ro, vec3(0.0), 1.9);
    vec3 bg = PAL(0.6) * 0.03 + PAL(0.75) * 0.04 * (1.0 - length(p) * 0.4);
    float t = 2.2, dmin = 9.0;
    bool hit = false;
    for (int i = 0; i < 90; ++i) {
        float d = mapB(ro + rd * t);
        dmin = min(dmin, d);
        if (d < 0.001) { hit = true; break; }
        t += d;
        if (t > 6.5) break;
    }
    if (!hit) return bg + PAL(0.3 + TIME * 0.02) * 0.5 * exp(-dmin * 12.0) * (0.5 + LVL);
    vec3 pos = ro + rd * t;
    vec2 e = vec2(0.003, -0.003);
    vec3 n = normalize(e.xyy * mapB(pos + e.xyy) + e.yyx * mapB(pos + e.yyx) + e.yxy * mapB(pos + e.yxy) + e.xxx * mapB(pos + e.xxx));
    float nv = clamp(-dot(n, rd), 0.0, 1.0);
    float fr = pow(1.0 - nv, 3.0);
    vec3 L = normalize(vec3(0.6, 0.8, 0.4));
    vec3 irid = PAL(nv * 1.6 + dot(n, vec3(0.3, 0.5, 0.2)) + MT * 0.05);
    irid *= irid * 1.2;
    vec3 col = irid * (0.12 + 0.55 * max(dot(n, L), 0.0));
    col += pow(max(dot(reflect(rd, n), L), 0.0), 40.0) * vec3(1.0);
    col += PAL(0.5 + nv * 2.0) * fr * 1.6;
    return tm(col * 1.2);
}
