vec3 vis(vec2 p, vec2 uv) {
    float rs = 0.2 + BASS * 0.05;
    float r = length(p) + 1e-4;
    vec2 q = p * (1.0 - rs * rs * 1.6 / (r * r + 0.02));
    vec2 g = q * 40.0;
    vec2 id = floor(g), f = fract(g) - 0.5;
    float h = h21(id);
    vec3 col = vec3(0.9, 0.95, 1.0) * step(0.9, h) * smoothstep(0.12, 0.0, length(f - (h22(id + 2.0) - 0.5) * 0.6)) * (0.4 + 0.6 * h);
    float n = fbm(q * 2.2 + vec2(3.0, MT * 0.01));
    col += mix(PAL(0.75), PAL(0.1), n) * 0.12 * smoothstep(0.35, 0.85, n) * n;
    col *= smoothstep(rs * 0.98, rs * 1.2, r);

    float pr = rs * 1.08;
    col += mix(PAL(0.2), vec3(1.0), 0.5) * (0.9 + BASS) * (smoothstep(0.006, 0.0, abs(r - pr)) + 0.01 / (abs(r - pr) + 0.01) * 0.2);

    float ang = atan(p.x + 1e-6, p.y);
    float lens = smoothstep(rs * 1.1, rs * 1.2, r) * smoothstep(rs * 1.9, rs * 1.3, r);
    float arc = lens * (0.35 + 0.65 * smoothstep(-0.3, 1.0, cos(ang)));
    float sw = fbm(vec2(ang * 3.0 - MT * 0.8, r * 9.0));
    col += mix(PAL(0.1), PAL(0.3), sw) * arc * (0.3 + 1.1 * sw) * (0.4 + 1.2 * LVL);

    vec2 e = vec2(p.x, (p.y + 0.015) / 0.2);
    float er = length(e) + 1e-4;
    float disk = smoothstep(rs * 1.4, rs * 1.9, er) * smoothstep(rs * 4.8, rs * 2.4, er);
    float sa = atan(e.y, e.x + 1e-6);
    float sw2 = fbm(vec2(sa * 2.5 + MT * 0.6 - 2.0 * log(er), er * 7.0));
    float dop = 1.0 + 0.7 * e.x / er;
    vec3 dc = mix(PAL(0.05), mix(PAL(0.3), vec3(1.0), 0.4), smoothstep(rs * 3.5, rs * 1.6, er));
    vec3 dcol = dc * disk * (0.25 + 1.2 * sw2) * dop * (0.5 + 1.4 * LVL);
    float front = step(e.y, 0.0) + step(rs, r) * step(0.0, e.y);
    col = col + dcol * front;
    return tm(col * 1.2);
}
