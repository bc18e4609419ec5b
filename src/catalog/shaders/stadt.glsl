// Tower height of grid cell id: the bands read outwards from the centre column.
float bh(vec2 id) {
    float r = length(id + 0.5) / 16.0;
    float s = SP(r * 0.9);
    float h = h21(id);
    return 0.12 + (0.5 + s * 2.3) * (0.3 + 0.7 * h * h + 0.5 * step(0.93, h)) * smoothstep(1.05, 0.6, r);
}

float map(vec3 p) {
    // above every roof a plane bound is enough
    if (p.y > 4.4) return p.y - 4.3;
    // outside the city only the low blocks remain: a cheap bound until near them
    float b = min(p.y - 0.13, length(p.xz) - 8.7);
    if (b > 0.04) return b;
    vec2 id = floor(p.xz / 0.5);
    vec2 q = p.xz - (id + 0.5) * 0.5;
    float h = bh(id);
    float d = sdBox(vec3(q.x, p.y - h * 0.5, q.y), vec3(0.17, h * 0.5, 0.17)) - 0.006;
    return min(d, p.y);
}

vec3 vis(vec2 p, vec2 uv) {
    float a = TIME * 0.06 + MOUSE.x * 1.5;
    vec3 ro = vec3(cos(a) * 9.0, 1.1 + MOUSE.y * 2.5, sin(a) * 9.0);
    vec3 ta = vec3(0.0, 1.3 + MOUSE.y * 0.6, 0.0);
    vec3 rd = rayDir(p, ro, ta, 1.6);
    // night sky: deep blue above, a glowing haze of city light on the horizon
    vec3 sky = mix(PAL(0.1) * 0.22, PAL(0.75) * 0.02, smoothstep(0.0, 0.45, rd.y));
    sky += PAL(0.35) * 0.18 * exp(-max(rd.y, 0.0) * 14.0);
    vec2 sg = floor(rd.xz / max(rd.y, 0.05) * 40.0);
    sky += vec3(0.6, 0.7, 1.0) * step(0.996, h21(sg)) * smoothstep(0.05, 0.3, rd.y) * 0.8;
    vec3 fogc = PAL(0.1) * 0.2 + PAL(0.35) * 0.08;
    float t = 0.0;
    bool hit = false;
    vec2 ird = 1.0 / max(abs(rd.xz), 1e-4);
    for (int i = 0; i < 80; ++i) {
        vec3 pos = ro + rd * t;
        float d = map(pos);
        if (d < 0.0015 * t) { hit = true; break; }
        // Never step past the cell border along the ray, so taller neighbours are not skipped.
        if (pos.y < 4.4 && (pos.y < 0.17 || dot(pos.xz, pos.xz) < 76.0)) {
            vec2 cq = pos.xz - (floor(pos.xz / 0.5) + 0.5) * 0.5;
            vec2 ex = (0.25 - cq * sign(rd.xz)) * ird;
            d = min(d, min(ex.x, ex.y) + 0.004);
        }
        t += d;
        if (t > 24.0) break;
    }
    if (!hit) return rd.y > 0.0 ? sky : fogc;
    vec3 pos = ro + rd * t;
    vec2 e = vec2(0.002, -0.002);
    vec3 n = normalize(e.xyy * map(pos + e.xyy) + e.yyx * map(pos + e.yyx) + e.yxy * map(pos + e.yxy) + e.xxx * map(pos + e.xxx));
    vec3 col;
    vec2 id = floor(pos.xz / 0.5);
    vec2 q = pos.xz - (id + 0.5) * 0.5;
    if (pos.y < 0.02) {
        // streets between the blocks, with a soft light spill from the towers
        vec2 g = 0.25 - abs(q);
        col = PAL(0.75) * 0.02 + PAL(0.3) * 0.3 * exp(-min(g.x, g.y) * 45.0) * step(0.0, 0.08 - min(g.x, g.y));
        col += PAL(0.5) * 0.08 * exp(-max(abs(q.x), abs(q.y)) * 6.0);
        col *= exp(-length(pos.xz) * 0.06);
    } else {
        float h = bh(id);
        float side = step(0.5, 1.0 - abs(n.y));
        float along = abs(n.x) > 0.5 ? pos.z : pos.x;
        vec2 w = vec2(along * 14.0, pos.y * 16.0);
        vec2 wf = abs(fract(w) - 0.5);
        float lit = step(h21(floor(w) + id * 7.1), 0.4 + 0.1 * sin(TIME * 0.3 + id.x));
        float win = smoothstep(0.34, 0.24, max(wf.x, wf.y)) * lit * side;
        vec3 base = PAL(0.8) * (0.03 + 0.08 * max(dot(n, normalize(vec3(0.4, 0.8, 0.3))), 0.0));
        vec3 wc = mix(PAL(h21(id + 3.1) * 0.5 + 0.3), vec3(1.0, 0.85, 0.6), step(0.7, h21(id + 9.2)) * 0.6);
        col = base + wc * win * (0.9 + 0.6 * h21(floor(w)));
        // glowing roof rims and corner edges
        vec2 c2 = max(0.17 - abs(q), 0.0);
        float edge = max(exp(-abs(pos.y - h) * 60.0) * side, exp(-min(c2.x, c2.y) * 120.0) * step(0.5, n.y));
        edge = max(edge, exp(-length(c2) * 150.0) * side * 0.6);
        col += PAL(0.5 + h21(id) * 0.2) * 1.4 * edge;
        col += PAL(0.3) * 0.12 * exp(-pos.y * 4.0);
    }
    float fog = 1.0 - exp(-t * 0.07);
    return mix(col, fogc, fog);
}
