float sdOct(vec3 p, float s) {
    p = abs(p);
    return (p.x + p.y + p.z - s) * 0.57735027;
}

float mapK(vec3 p) {
    float k = 1.0 + BASS * 0.25;
    vec3 q = p;
    q.xz = rot(MT * 0.4) * q.xz;
    q.xy = rot(MT * 0.23) * q.xy;
    float d = max(sdOct(q, 1.05 * k), sdBox(q, vec3(0.74 * k)));
    for (int i = 0; i < 3; ++i) {
        float a = MT * 0.7 + float(i) * TAU / 3.0;
        vec3 c = vec3(cos(a) * 1.7, sin(a * 2.0 + float(i)) * 0.35, sin(a) * 1.7);
        vec3 o = p - c;
        o.xy = rot(MT * 1.3 + float(i)) * o.xy;
        o.yz = rot(MT * 0.9) * o.yz;
        d = min(d, sdOct(o, 0.22 * k));
    }
    return d;
}

vec3 vis(vec2 p, vec2 uv) {
    float a = TIME * 0.12 + MOUSE.x * 2.0;
    float el = 0.35 + MOUSE.y * 0.8;
    vec3 ro = vec3(cos(a) * cos(el), sin(el), sin(a) * cos(el)) * 4.0;
    vec3 rd = rayDir(p, ro, vec3(0.0), 1.8);
    float t = 2.0, glow = 0.0;
    bool hit = false;
    for (int i = 0; i < 80; ++i) {
        float d = mapK(ro + rd * t);
        glow += exp(-d * 8.0) * 0.02;
        if (d < 0.001) { hit = true; break; }
        t += d;
        if (t > 8.5) break;
    }
    vec3 col = PAL(0.75) * 0.04 * (1.2 - length(p) * 0.5) + PAL(0.1) * glow * (0.3 + LVL * 1.5);
    if (!hit) return tm(col);
    vec3 pos = ro + rd * t;
    vec2 e = vec2(0.002, -0.002);
    vec3 n = normalize(e.xyy * mapK(pos + e.xyy) + e.yyx * mapK(pos + e.yyx) + e.yxy * mapK(pos + e.yxy) + e.xxx * mapK(pos + e.xxx));
    e *= 12.0;
    vec3 n2 = normalize(e.xyy * mapK(pos + e.xyy) + e.yyx * mapK(pos + e.yyx) + e.yxy * mapK(pos + e.yxy) + e.xxx * mapK(pos + e.xxx));
    float edge = clamp(length(n - n2) * 2.5, 0.0, 1.0);
    float nv = clamp(-dot(n, rd), 0.0, 1.0);
    vec3 r = reflect(rd, n);
    vec3 face = PAL(dot(n, vec3(0.3, 0.6, 0.2)) + 0.5 + TIME * 0.02);
    col = face * face * (0.15 + 0.6 * max(dot(n, normalize(vec3(0.4, 0.9, 0.2))), 0.0));
    col += PAL(0.25 + r.y * 0.3) * pow(1.0 - nv, 3.0) * 0.8;
    col += vec3(1.0) * pow(max(dot(r, normalize(vec3(0.4, 0.9, 0.2))), 0.0), 30.0) * 0.6;
    col += mix(PAL(0.1), vec3(1.0), 0.3) * edge * (0.8 + LVL * 1.5);
    return tm(col * 1.3);
}
