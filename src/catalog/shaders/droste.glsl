vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Sample farther out and twisted: each frame the picture shrinks into itself.
    float z = 1.03 + BASS * 0.035;
    vec2 q = rot(0.015 + MID * 0.05) * p * z;
    vec3 c = PREVP(q) * 0.965;

    // 24 segments on a square frame at the edge.
    float ch = max(abs(p.x), abs(p.y));
    float a = atan(p.x, p.y) / TAU + 0.5;
    float seg = a * 24.0;
    float id = floor(seg);
    float f = abs(fract(seg) - 0.5);
    float s = SP(abs(id - 11.5) / 12.0 * 0.9);
    float band = smoothstep(0.012, 0.0, abs(ch - 0.86) - 0.035) * smoothstep(0.48, 0.4, f);
    vec3 sc = mix(PAL(id / 24.0 + TIME * 0.03), vec3(1.0), smoothstep(0.6, 1.0, s) * 0.5);
    c += sc * band * (0.12 + s * 1.1);
    return min(c, vec3(3.0));
}
