// Tower height of grid cell id: the bands read outwards from the centre column.
float bh(vec2 id) {
    float r = length(id + 0.5) / 14.0;
    float s = SP(r * 0.9);
    return 0.08 + (0.3 + s * 2.6) * (0.6 + 0.4 * h21(id)) * smoothstep(1.05, 0.7, r);
}

float map(vec3 p) {
    vec2 id = floor(p.xz / 0.5);
    vec2 q = p.xz - (id + 0.5) * 0.5;
    float h = bh(id);
    float d = sdBox(vec3(q.x, p.y - h * 0.5, q.y), vec3(0.17, h * 0.5, 0.17)) - 0.01;
    // Never step past the cell border, so taller neighbours are not skipped.
    vec2 e = 0.25 - abs(q);
    d = min(d, max(min(e.x, e.y), 0.0) + 0.05);
    return min(d, p.y);
}

vec3 vis(vec2 p, vec2 uv) {
    float a = TIME * 0.08 + MOUSE.x * 1.5;
    vec3 ro = vec3(cos(a) * 9.0, 5.0 + MOUSE.y * 3.0, sin(a) * 9.0);
    vec3 rd = rayDir(p, ro, vec3(0.0, 0.4, 0.0), 1.9);
    vec3 sky = mix(PAL(0.1) * 0.16, PAL(0.75) * 0.015, clamp(rd.y * 3.0, 0.0, 1.0));
    sky += PAL(0.5) * 0.12 * exp(-abs(rd.y) * 25.0);
    float t = 0.0;
    bool hit = false;
    for (int i = 0; i < 100; ++i) {
        float d = map(ro + rd * t);
        if (d < 0.001 * t) { hit = true; break; }
        t += d;
        if (t > 30.0) break;
    }
    if (!hit) return sky;
    vec3 pos = ro + rd * t;
    vec2 e = vec2(0.002, -0.002);
    vec3 n = normalize(e.xyy * map(pos + e.xyy) + e.yyx * map(pos + e.yyx) + e.yxy * map(pos + e.yxy) + e.xxx * map(pos + e.xxx));
    vec3 col;
    if (pos.y < 0.003) {
        vec2 g = abs(fract(pos.xz * 2.0) - 0.5);
        col = PAL(0.25) * 0.03 + PAL(0.5) * 0.25 * exp(-min(g.x, g.y) * 40.0) * exp(-length(pos.xz) * 0.15);
    } else {
        vec2 id = floor(pos.xz / 0.5);
        float h = bh(id);
        float along = abs(n.x) > 0.5 ? pos.z : pos.x;
        vec2 w = vec2(along * 14.0, pos.y * 16.0);
        vec2 wf = abs(fract(w) - 0.5);
        float lit = step(h21(floor(w) + id * 7.1), 0.35 + 0.1 * sin(TIME * 0.3 + id.x));
        float win = smoothstep(0.32, 0.25, max(wf.x, wf.y)) * lit * step(0.5, 1.0 - abs(n.y));
        vec3 base = PAL(0.75) * (0.05 + 0.1 * max(dot(n, normalize(vec3(0.4, 0.8, 0.3))), 0.0));
        col = base + PAL(h21(id) * 0.5 + 0.3) * win * 1.8;
        col += PAL(0.5) * 1.2 * smoothstep(0.04, 0.0, abs(pos.y - h)) * step(0.5, 1.0 - abs(n.y));
        col += PAL(0.6) * 0.25 * step(0.5, n.y) * smoothstep(0.0, 2.0, h);
        col += PAL(0.1) * 0.15 * exp(-pos.y * 3.0);
    }
    return mix(col, sky, 1.0 - exp(-t * 0.04));
}
