vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    float m = abs(uv.x - 0.5) * 2.0;
    float s = SP(m * 0.9);

    // Rise with jitter; green and blue cool faster so the tips go red.
    float rise = (1.5 + BASS * 3.0) / RES.y;
    vec2 j = vec2(noise(vec2(uv.x * 16.0, uv.y * 9.0 - TIME * 2.5)) - 0.5, noise(uv * 22.0 + TIME * 2.0));
    vec2 q = uv - vec2(j.x * 4.0 / RES.x, rise * (0.5 + j.y));
    vec3 cool = pow(vec3(0.968, 0.93, 0.86), vec3(1.0 - s * 0.4));
    vec3 c = PREV(q) * cool;

    // Fresh heat at the bottom, in tongues that follow the spectrum.
    float tongue = noise(vec2(uv.x * 36.0, TIME * 5.0));
    float h = 0.02 + s * 0.12 * (0.5 + tongue);
    float f = smoothstep(h, 0.0, uv.y) * (0.35 + tongue * 0.65);
    vec3 hot = mix(PAL(0.2), PAL(0.5), smoothstep(0.1, 0.8, s));
    hot = mix(hot, vec3(1.0, 0.95, 0.85), smoothstep(0.55, 1.0, s) * 0.5);
    c = max(c, hot * f * (0.45 + s * 1.5));
    return min(c, vec3(3.0));
}
