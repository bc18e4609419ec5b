vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    float w = 0.02 + BASS * 0.045;
    float ay = abs(p.y);
    vec3 c;
    if (ay < w) {
        float x = p.x / ASPECT;
        float s = SP(abs(x) * 0.95);
        float fl = 0.55 + 0.9 * noise(vec2(x * 14.0, TIME * 2.5));
        vec3 sc = mix(PAL(abs(x) * 0.7 + TIME * 0.05), vec3(1.0), smoothstep(0.7, 1.0, s) * 0.4);
        c = sc * (0.12 + s * 1.8 * fl) * (1.0 - 0.6 * ay / w);
        c += vec3(0.6) * smoothstep(0.3, 1.0, BEAT) * (1.0 - ay / w);
    } else {
        // Each half reads only towards the strip, never across it.
        float v = (0.003 + BASS * 0.008) * (0.3 + ay * 2.5);
        float sy = sign(p.y) * max(ay - v, 0.0);
        c = PREVP(vec2(p.x * (1.0 - v * 0.1), sy)) * 0.993;
    }
    return min(c, vec3(2.5));
}
