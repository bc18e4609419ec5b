// Distance estimate and orbit trap.
vec2 mapMB(vec3 p) {
    float pw = 8.0 + 1.5 * sin(MT * 0.15) + BASS * 0.6;
    vec3 z = p;
    float dr = 1.0, r = length(z), trap = 1e9;
    for (int i = 0; i < 6; ++i) {
        r = max(length(z), 1e-6);
        if (r > 2.0) break;
        float th = acos(clamp(z.z / r, -1.0, 1.0)) * pw;
        float ph = atan(z.y, z.x + 1e-9) * pw;
        float st = sin(th);
        float rp = pow(r, pw - 1.0);
        dr = rp * pw * dr + 1.0;
        z = rp * r * vec3(st * cos(ph), st * sin(ph), cos(th)) + p;
        trap = min(trap, dot(z, z));
    }
    r = max(r, 1e-6);
    return vec2(0.5 * log(r) * r / dr, trap);
}

vec3 vis(vec2 p, vec2 uv) {
    float a = TIME * 0.1 + MOUSE.x * 2.0;
    float el = 0.4 + MOUSE.y * 0.9;
    vec3 ro = vec3(cos(a) * cos(el), sin(el), sin(a) * cos(el)) * 2.7;
    vec3 rd = rayDir(p, ro, vec3(0.0), 1.8);
    vec3 bg = PAL(0.0) * 0.05 * exp(-length(p) * 1.5) + PAL(0.75) * 0.015;
    // Start at the bounding sphere of radius 1.25.
    float b = dot(ro, rd), c = dot(ro, ro) - 1.3225, disc = b * b - c;
    if (disc < 0.0) return bg;
    float t = -b - sqrt(disc), tEnd = -b + sqrt(disc);
    vec2 h = vec2(1.0);
    int steps = 0;
    bool hit = false;
    for (int i = 0; i < 64; ++i) {
        h = mapMB(ro + rd * t);
        if (h.x < 0.003 * t) { hit = true; break; }
        t += h.x * 1.2;
        steps = i;
        if (t > tEnd) break;
    }
    if (!hit) return bg + PAL(0.1) * 0.1 * float(steps) / 64.0;
    vec3 pos = ro + rd * t;
    vec2 e = vec2(0.001, -0.001);
    vec3 n = normalize(e.xyy * mapMB(pos + e.xyy).x + e.yyx * mapMB(pos + e.yyx).x + e.yxy * mapMB(pos + e.yxy).x + e.xxx * mapMB(pos + e.xxx).x);
    float ao = clamp(1.0 - float(steps) / 44.0, 0.0, 1.0);
    vec3 L = normalize(vec3(0.6, 0.7, 0.4));
    float tr = clamp(sqrt(h.y) * 0.8, 0.0, 1.0);
    vec3 base = mix(PAL(0.0) * 0.7, PAL(0.45) * 1.2, smoothstep(0.55, 1.0, tr));
    vec3 col = base * (0.15 + 0.7 * max(dot(n, L), 0.0)) * ao * ao;
    float fr = 1.0 - max(-dot(n, rd), 0.0);
    float sp = max(dot(reflect(rd, n), L), 0.0);
    sp *= sp; sp *= sp; sp *= sp; sp *= sp; sp *= sp;
    col += (PAL(0.5) * fr * fr * fr * (0.3 + BASS * 0.5) + sp * 0.4) * ao;
    return tm(col * 1.5);
}
