vec3 scene(vec2 p, float blur) {
    vec3 col = vec3(0.0);
    for (int i = 0; i < 7; ++i) {
        float fi = float(i);
        float vert = step(0.62, h11(fi * 5.7 + 1.0));
        vec2 c = vec2((fi - 3.0) * ASPECT / 3.6 + (h11(fi + 0.7) - 0.5) * 0.12, 0.0 + 0.55 * h11(fi * 1.7 + 0.3));
        vec2 size = mix(vec2(0.16 + 0.14 * h11(fi + 9.1), 0.075), vec2(0.075, 0.2 + 0.12 * h11(fi + 9.1)), vert);
        vec2 q = p - c;
        vec2 d = abs(q) - size;
        float box = length(max(d, 0.0)) + min(max(d.x, d.y), 0.0);
        if (box > 0.4) continue;
        // rounded frame tube
        float tube = abs(box + 0.014);
        // glyphs: each cell lights a few of five strokes, like tube lettering
        vec2 gq = vert > 0.5 ? q.yx * vec2(-1.0, 1.0) : q;
        vec2 gs = vert > 0.5 ? size.yx : size;
        float cw = 0.078;
        float n = floor((gs.x * 2.0 - 0.06) / cw);
        float ix = clamp(floor((gq.x + n * cw * 0.5) / cw), 0.0, n - 1.0);
        vec2 l = gq - vec2((ix + 0.5 - n * 0.5) * cw, 0.0);
        if (vert > 0.5) l = l.yx;
        vec2 hsz = vert > 0.5 ? vec2(0.038, 0.023) : vec2(0.022, 0.036);
        float bits = floor(h21(vec2(ix, fi * 3.3)) * 32.0);
        float gd = 1e9;
        if (mod1(bits, 2.0) > 0.5 || bits < 4.0) gd = min(gd, sdSeg(l, -hsz, vec2(-hsz.x, hsz.y)));
        if (mod1(floor(bits / 2.0), 2.0) > 0.5) gd = min(gd, sdSeg(l, vec2(hsz.x, -hsz.y), hsz));
        if (mod1(floor(bits / 4.0), 2.0) > 0.5 || bits < 4.0) gd = min(gd, sdSeg(l, vec2(-hsz.x, hsz.y), hsz));
        if (mod1(floor(bits / 8.0), 2.0) > 0.5) gd = min(gd, sdSeg(l, vec2(-hsz.x, 0.0), vec2(hsz.x, 0.0)));
        if (mod1(floor(bits / 16.0), 2.0) > 0.5 || bits < 8.0) gd = min(gd, sdSeg(l, -hsz, vec2(hsz.x, -hsz.y)));
        if (box > 0.0) gd = 1e9;
        // broken tubes stutter, the rest hum gently
        float fl = h11(floor(TIME * 12.0) + fi * 13.0);
        float on = h11(fi * 4.3) > 0.7 ? step(0.25, fl) * step(0.3, h11(floor(TIME * 1.5) + fi)) : 0.88 + 0.12 * sin(TIME * 50.0 + fi);
        vec3 c0 = PAL(fi * 0.29 + 0.05);
        vec3 c1 = PAL(fi * 0.29 + 0.45);
        float b = on * (0.55 + BASS * 1.1);
        float t = min(tube, gd + 0.002);
        vec3 tc = tube < gd ? c0 : c1;
        col += mix(tc, vec3(1.0), 0.4) * b * smoothstep(0.006 + blur * 0.02, 0.002, t) * (1.0 - blur * 0.4);
        col += tc * b * (exp(-t * (55.0 - blur * 30.0)) * (0.55 + blur * 0.2) + exp(-max(box, 0.0) * 6.0) * 0.16);
        // the wall behind the sign glows faintly
        col += c0 * b * 0.05 * step(box, 0.0);
    }
    return col;
}

vec3 vis(vec2 p, vec2 uv) {
    const float horizon = -0.28;
    vec3 col = mix(PAL(0.75) * 0.06, PAL(0.6) * 0.015, smoothstep(horizon, 1.0, p.y));
    // dark blocks of houses against the city glow
    float bx = floor(p.x * 2.2 + 10.0);
    float roof = 0.55 + 0.5 * h11(bx);
    if (p.y > horizon) {
        vec2 wg = p * vec2(16.0, 22.0);
        float win = step(0.9, h21(floor(wg))) * step(abs(fract(wg.x) - 0.5), 0.28) * step(abs(fract(wg.y) - 0.5), 0.3);
        col = mix(col, vec3(0.016, 0.013, 0.028) + PAL(0.1) * win * 0.05, step(p.y, roof));
        col += scene(p, 0.0);
    } else {
        // wet street: mirrored scene, stretched, smeared and rippled by rain
        float depth = horizon - p.y;
        vec2 g = vec2(p.x * 7.0, depth * 14.0 / (depth + 0.2));
        vec2 id = floor(g);
        float t = fract(TIME * 1.3 + h21(id));
        vec2 o = h22(id) * 0.6 + 0.2;
        float rr = length((fract(g) - o) * vec2(1.0, 2.0));
        float ripple = sin((rr - t * 0.5) * 40.0) * exp(-rr * 6.0) * (1.0 - t);
        float smear = noise(vec2(p.x * 30.0, depth * 3.0)) - 0.5;
        vec2 m = vec2(p.x + ripple * 0.012 + smear * 0.03 * depth, horizon + depth * 1.15);
        vec3 refl = vec3(0.0);
        for (int k = 0; k < 3; ++k) refl += scene(m + vec2(0.0, (float(k) - 1.0) * 0.035 + (noise(vec2(p.x * 50.0, depth * 2.0 + float(k))) - 0.5) * 0.08), 1.0);
        col = vec3(0.008, 0.007, 0.014) + refl / 3.0 * 0.85 * exp(-depth * 0.7);
        col += PAL(0.3) * 0.08 * max(ripple, 0.0) * (0.3 + LVL);
        col += PAL(0.75) * 0.05 * smoothstep(0.15, 0.0, depth);
    }
    // rain streaks, lit by the level
    vec2 rp = vec2(p.x * 45.0 + p.y * 5.0, p.y * 2.0 + TIME * 6.0);
    vec2 ri = floor(rp);
    float streak = step(0.9, h21(vec2(ri.x, 3.0))) * smoothstep(0.25, 0.0, abs(fract(rp.x) - 0.5)) * smoothstep(0.2, 0.0, abs(fract(rp.y + h21(vec2(ri.x, 1.0))) - 0.5) - 0.12);
    col += mix(PAL(0.5), vec3(0.8), 0.5) * streak * (0.05 + LVL * 0.3);
    // a pale flash on a strong beat
    col += vec3(0.7, 0.75, 0.85) * 0.15 * smoothstep(0.85, 1.0, BEAT) * smoothstep(-0.3, 1.0, p.y);
    return tm(col * 1.2);
}
