vec3 vis(vec2 p, vec2 uv) {
    vec2 q = p * 1.2;
    float t = MT * 0.06;
    float k = 1.6 + BASS * 1.8;
    vec2 a = vec2(fbm(q + vec2(t, 0.0)), fbm(q + vec2(5.2, 1.3 - t)));
    vec2 b = vec2(fbm(q + k * a + vec2(1.7, 9.2) + t * 0.7), fbm(q + k * a + vec2(8.3, 2.8) - t * 0.5));
    vec2 c = vec2(fbm(q + k * b + vec2(3.1, 4.4)), fbm(q + k * b + vec2(6.6, 0.9) + t));
    float f = fbm(q + k * c);
    vec3 col = mix(PAL(0.75) * 0.15, PAL(0.55 + a.x * 0.5), smoothstep(0.15, 0.75, f));
    col = mix(col, PAL(0.0 + b.y * 0.6), smoothstep(0.3, 0.9, length(b) - 0.3) * 0.7);
    col *= 0.3 + 1.1 * f * f;
    col += mix(PAL(0.1), vec3(1.0), 0.5) * pow(smoothstep(0.55, 0.85, f * c.x * 1.6), 2.0) * 1.2;
    col *= 0.55 + 0.9 * LVL;
    return tm(col * 1.5);
}
