float sdPoly(vec2 p, float n, float r) {
    float an = PI / n;
    vec2 acs = vec2(cos(an), sin(an));
    float bn = mod1(atan(p.x, p.y + 1e-6), 2.0 * an) - an;
    p = length(p) * vec2(cos(bn), abs(sin(bn))) - r * acs;
    p.y += clamp(-p.y, 0.0, r * acs.y);
    return length(p) * sign(p.x);
}

vec3 vis(vec2 p, vec2 uv) {
    float r = length(p);
    vec3 col = PAL(0.3) * 0.05 * exp(-r * 1.3);
    col += mix(PAL(0.0), vec3(1.0), 0.4) * exp(-r * 7.0) * (0.2 + BASS * 1.1);
    for (int i = 0; i < 8; ++i) {
        float fi = float(i);
        float s = SP(fi / 8.0 * 0.85 + 0.02);
        float dirn = mod1(fi, 2.0) < 0.5 ? 1.0 : -1.0;
        vec2 q = rot(MT * (0.12 + fi * 0.02) * dirn) * p;
        float R = 0.12 + fi * 0.1 + s * 0.06;
        float sd = sdPoly(q, 3.0 + fi, R);
        float d = abs(sd);
        float an = PI / (3.0 + fi);
        float bn = mod1(atan(q.x, q.y + 1e-6), 2.0 * an) - an;
        float dv = length(length(q) * vec2(cos(bn), abs(sin(bn))) - R * vec2(cos(an), sin(an)));
        vec3 c = PAL(fi / 8.0);
        float b = 0.25 + s * 1.3;
        col += c * 0.025 * step(sd, 0.0);
        col += mix(c, vec3(1.0), 0.35 * s) * smoothstep(0.004, 0.0, d) * b;
        col += c * 0.01 / (d + 0.01) * 0.22 * b;
        col += mix(c, vec3(1.0), 0.5) * (smoothstep(0.012, 0.006, dv) + 0.004 / (dv + 0.004) * 0.3) * b;
    }
    return tm(col);
}
