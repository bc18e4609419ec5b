vec3 vis(vec2 p, vec2 uv) {
    vec2 q = p - vec2(MOUSE.x * 0.4, -1.0);
    float r = length(q);
    float a = atan(q.x, max(q.y, 0.0) + 1e-5);
    const float N = 64.0;
    float seg = (a / PI + 0.5) * N;
    float f = fract(seg) - 0.5;
    float x = abs((floor(seg) + 0.5) / N * 2.0 - 1.0);
    float s = SP(x * 0.85 + 0.01);

    float r0 = 0.36 + BASS * 0.1;
    float len = 0.05 + s * 1.55;
    float t = clamp((r - r0) / len, 0.0, 1.0);
    float hw = mix(0.38, 0.16, t);
    float ray = smoothstep(hw, hw - 0.12, abs(f)) * step(r0, r) * smoothstep(len, len - 0.08, r - r0);
    vec3 c = mix(PAL(0.1 + x * 0.6 + t * 0.25), vec3(1.0, 0.95, 0.85), 0.35 * (1.0 - t) * s);

    vec3 col = mix(PAL(0.875) * 0.07, PAL(0.0) * 0.12, exp(-1.5 * r));
    col += c * ray * (0.35 + 0.9 * s) * (1.0 - 0.6 * t);
    col += c * 0.12 * s * exp(-3.0 * abs(f)) * smoothstep(len + 0.3, 0.0, r - r0) * step(r0, r);
    float sun = smoothstep(r0, r0 - 0.01, r);
    col = mix(col, mix(PAL(0.25) * 1.6, vec3(1.0, 0.96, 0.85), smoothstep(r0, 0.0, r)), sun);
    col += PAL(0.2) * 0.45 * exp(-5.0 * max(r - r0, 0.0)) * (0.6 + BASS);
    return tm(col * 1.3);
}
