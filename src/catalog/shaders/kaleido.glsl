vec3 vis(vec2 p, vec2 uv) {
    float r = length(p);
    float a = atan(p.y, p.x + 1e-6) + MT * 0.08;
    const float sec = TAU / 8.0;
    a = abs(mod1(a, sec) - sec * 0.5);
    vec2 q = r * vec2(cos(a), sin(a)) * (1.6 - BASS * 0.5);
    float t = MT * 0.12;
    vec2 w = vec2(fbm(q * 1.5 + t), fbm(q * 1.5 + 4.7 - t));
    float n = fbm(q * 1.2 + w * 1.6 - vec2(t * 0.7, 0.0));
    vec3 col = PAL(n * 1.6 + w.x * 0.4 + MT * 0.02) * (0.2 + 0.9 * n * n);
    col += PAL(n + 0.5) * 0.25 * smoothstep(0.55, 0.8, w.y);
    float v = n * 9.0;
    float cl = abs(fract(v) - 0.5) / (fwidth(v) + 1e-4);
    col += mix(PAL(n * 2.0 + 0.3), vec3(1.0), 0.5) * smoothstep(1.6, 0.2, cl) * (0.15 + 1.2 * HIGH);
    col *= smoothstep(1.7, 0.25, r);
    return tm(col * 1.4);
}
