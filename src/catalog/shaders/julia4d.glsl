vec4 qsq(vec4 q) {
    return vec4(q.x * q.x - dot(q.yzw, q.yzw), 2.0 * q.x * q.yzw);
}

// Distance estimate and orbit trap of the Julia set for the drifting constant.
vec2 mapJ(vec3 p) {
    vec4 c = vec4(-0.291 + BASS * 0.12, -0.399, 0.339, 0.437) + 0.13 * sin(MT * vec4(0.13, 0.11, 0.17, 0.07) + vec4(0.0, 1.0, 2.0, 3.0));
    vec4 z = vec4(p, 0.0);
    float dz = 1.0, m = dot(z, z), trap = 1e9;
    for (int i = 0; i < 11; ++i) {
        dz = 2.0 * sqrt(m) * dz;
        z = qsq(z) + c;
        m = dot(z, z);
        trap = min(trap, m);
        if (m > 256.0) break;
    }
    return vec2(0.25 * sqrt(m) * max(log(m), 0.0) / max(dz, 1e-6), trap);
}

vec3 vis(vec2 p, vec2 uv) {
    float a = TIME * 0.1 + MOUSE.x * 2.0;
    float el = 0.3 + MOUSE.y * 0.9;
    vec3 ro = vec3(cos(a) * cos(el), sin(el), sin(a) * cos(el)) * 2.6;
    vec3 rd = rayDir(p, ro, vec3(0.0), 1.8);
    vec3 bg = PAL(0.0) * 0.05 * exp(-length(p)) + PAL(0.75) * 0.015;
    float b = dot(ro, rd), cc = dot(ro, ro) - 2.56, disc = b * b - cc;
    if (disc < 0.0) return bg;
    float t = max(-b - sqrt(disc), 0.0), tEnd = -b + sqrt(disc);
    vec2 h = vec2(1.0);
    int steps = 0;
    bool hit = false;
    for (int i = 0; i < 90; ++i) {
        h = mapJ(ro + rd * t);
        if (h.x < 0.0008 * t) { hit = true; break; }
        t += h.x;
        steps = i;
        if (t > tEnd) break;
    }
    if (!hit) return bg + PAL(0.3) * 0.12 * float(steps) / 90.0;
    vec3 pos = ro + rd * t;
    vec2 e = vec2(0.001, -0.001);
    vec3 n = normalize(e.xyy * mapJ(pos + e.xyy).x + e.yyx * mapJ(pos + e.yyx).x + e.yxy * mapJ(pos + e.yxy).x + e.xxx * mapJ(pos + e.xxx).x);
    float ao = clamp(1.0 - float(steps) / 80.0, 0.0, 1.0);
    vec3 L = normalize(vec3(0.5, 0.8, 0.4));
    vec3 base = PAL(clamp(sqrt(h.y), 0.0, 1.0) * 0.7 + 0.1);
    vec3 col = base * (0.12 + 0.7 * max(dot(n, L), 0.0)) * (0.3 + 0.7 * ao);
    col += PAL(0.5) * pow(1.0 - max(-dot(n, rd), 0.0), 3.0) * 0.5;
    col += vec3(1.0) * pow(max(dot(reflect(rd, n), L), 0.0), 40.0) * 0.5 * ao;
    return tm(col * 1.4);
}
