vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    float w = 0.025 + BASS * 0.05;
    float ay = abs(p.y);
    vec3 c;
    if (ay < w) {
        float x = p.x / ASPECT;
        float s = SP(abs(x) * 0.95);
        vec3 sc = mix(PAL(abs(x) * 0.8 + TIME * 0.03), vec3(1.0), smoothstep(0.65, 1.0, s) * 0.6);
        c = sc * (0.1 + s * 1.3) * (1.0 - 0.5 * ay / w);
        c = mix(c, vec3(1.6), clamp(BEAT, 0.0, 1.0) * 0.8);
    } else {
        // Each half reads only towards the strip, never across it.
        float v = (0.002 + BASS * 0.006) * (0.3 + ay * 2.2);
        float sy = sign(p.y) * max(ay - v, 0.0);
        c = PREVP(vec2(p.x * (1.0 - v * 0.15), sy)) * 0.992;
    }
    return min(c, vec3(2.5));
}
