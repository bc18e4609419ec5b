vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Sample farther out and twisted: each frame the picture shrinks into itself.
    vec2 b = vec2(ASPECT, 1.0) * 0.93;
    vec2 q = rot(0.012 + MID * 0.05) * p * (1.03 + BASS * 0.035);
    vec3 c = PREVP(q) * 0.95;
    if (max(abs(q.x) - b.x, abs(q.y) - b.y) > 0.0) c = vec3(0.0);

    // 24 segments on a frame along the screen edge.
    float d = max(abs(p.x) - b.x, abs(p.y) - b.y);
    float a = atan(p.x / ASPECT, p.y + 1e-6) / TAU + 0.5;
    float seg = a * 24.0;
    float id = floor(seg);
    float f = abs(fract(seg) - 0.5);
    float s = SP(abs(id - 11.5) / 12.0 * 0.9);
    float band = smoothstep(0.006, 0.0, abs(d + 0.04) - 0.03) * smoothstep(0.47, 0.4, f);
    vec3 sc = mix(PAL(id / 24.0 + TIME * 0.03), vec3(1.0), smoothstep(0.6, 1.0, s) * 0.4);
    c += sc * band * (0.1 + s * 0.75);
    return min(c, vec3(3.0));
}
