float sdTorus(vec3 p, vec2 t) {
    return length(vec2(length(p.xz) - t.x, p.y)) - t.y;
}

// Distance and material: 0 for the core, 1...4 for the rings.
vec2 mapG(vec3 p) {
    vec2 res = vec2(length(p) - 0.3 - SP(0.04) * 0.18, 0.0);
    vec3 q = p;
    for (int i = 0; i < 4; ++i) {
        float fi = float(i);
        float s = SP(0.12 + fi * 0.18);
        float a = MT * (0.6 + fi * 0.17) + s * 0.8;
        if (i % 2 == 0) q.yz = rot(a) * q.yz; else q.xy = rot(a) * q.xy;
        float d = sdTorus(q, vec2(0.62 + fi * 0.27, 0.025 + s * 0.04));
        if (d < res.x) res = vec2(d, fi + 1.0);
    }
    return res;
}

vec3 vis(vec2 p, vec2 uv) {
    float a = TIME * 0.13 + MOUSE.x * 2.0;
    float el = 0.35 + MOUSE.y * 0.8;
    vec3 ro = vec3(cos(a) * cos(el), sin(el), sin(a) * cos(el)) * 3.7;
    vec3 rd = rayDir(p, ro, vec3(0.0), 1.8);
    float t = 2.0, dmin = 9.0;
    vec2 h = vec2(1.0);
    bool hit = false;
    for (int i = 0; i < 90; ++i) {
        h = mapG(ro + rd * t);
        dmin = min(dmin, h.x);
        if (h.x < 0.001) { hit = true; break; }
        t += h.x;
        if (t > 7.5) break;
    }
    float glowCore = exp(-length(cross(rd, -ro)) * 2.5);
    vec3 col = PAL(0.75) * 0.03 + PAL(0.1) * glowCore * (0.25 + BASS * 1.2);
    if (!hit) return tm(col + PAL(0.2) * 0.4 * exp(-dmin * 18.0) * (0.3 + BASS));
    vec3 pos = ro + rd * t;
    vec2 e = vec2(0.002, -0.002);
    vec3 n = normalize(e.xyy * mapG(pos + e.xyy).x + e.yyx * mapG(pos + e.yyx).x + e.yxy * mapG(pos + e.yxy).x + e.xxx * mapG(pos + e.xxx).x);
    if (h.y < 0.5) return tm(col + PAL(0.15) * (1.2 + BASS * 2.5) * (0.4 + 0.6 * max(-dot(n, rd), 0.0)) + vec3(0.2));
    // Rings: metal lit by the core and a key light.
    vec3 r = reflect(rd, n);
    float core = max(dot(n, -normalize(pos)), 0.0) / (1.0 + dot(pos, pos));
    vec3 c = PAL(h.y * 0.22 + TIME * 0.02);
    col = c * (0.08 + 0.5 * max(dot(n, normalize(vec3(0.5, 0.8, 0.3))), 0.0));
    col += PAL(0.15) * core * (1.0 + BASS * 2.0);
    col += vec3(1.0) * pow(max(dot(r, normalize(vec3(0.5, 0.8, 0.3))), 0.0), 40.0);
    col += c * pow(1.0 - max(-dot(n, rd), 0.0), 3.0) * 0.6;
    return tm(col * 1.3);
}
