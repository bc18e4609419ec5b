vec3 vis(vec2 p, vec2 uv) {
    vec2 q = p * (1.0 + 0.045 * dot(p, p));
    vec2 hs = vec2(ASPECT * 0.9, 0.86);
    vec2 e = abs(q) - hs + 0.08;
    float box = length(max(e, 0.0)) + min(max(e.x, e.y), 0.0) - 0.08;
    float inside = smoothstep(0.01, -0.01, box);

    vec2 cell = hs / vec2(5.0, 4.0);
    vec2 g = abs(fract(q / cell + 0.5) - 0.5) * cell;
    float grid = smoothstep(0.004, 0.0, min(g.x, g.y));
    vec2 tk = abs(fract(q / cell * 5.0 + 0.5) - 0.5) * cell / 5.0;
    float ticks = smoothstep(0.003, 0.0, min(tk.x + step(0.015, abs(q.y)), tk.y + step(0.015, abs(q.x))));

    float x = q.x / hs.x * 0.5 + 0.5;
    float amp = hs.y * 0.8;
    float d = 1e3;
    const float dxs = 1.0 / 256.0;
    float x0 = (floor(x / dxs) - 2.0) * dxs;
    vec2 a = vec2((x0 * 2.0 - 1.0) * hs.x, WV(x0) * amp);
    for (int i = 1; i <= 5; ++i) {
        float xi = x0 + float(i) * dxs;
        vec2 b = vec2((xi * 2.0 - 1.0) * hs.x, WV(xi) * amp);
        d = min(d, sdSeg(q, a, b));
        a = b;
    }
    float br = 0.55 + LVL * 1.4;
    vec3 ph = PAL(0.0);
    vec3 col = PAL(0.25) * 0.035 * (1.0 - 0.5 * dot(q, q));
    col += PAL(0.25) * (grid * 0.22 + ticks * 0.3);
    col += mix(ph, vec3(1.0), 0.6) * smoothstep(0.006, 0.0, d) * br;
    float bw = 0.01 + 0.012 * BASS;
    col += ph * (bw / (d + bw)) * 0.45 * br;
    col *= 0.86 + 0.14 * sin(uv.y * RES.y * 1.6);
    col *= inside;
    col += vec3(0.05, 0.055, 0.05) * smoothstep(0.06, 0.0, abs(box)) * (1.0 - inside * 0.5);
    return tm(col * 1.2);
}
