vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Rise with jitter; green and blue cool faster so embers go red.
    float rise = (1.2 + BASS * 2.5) / RES.y;
    vec2 j = vec2(noise(vec2(uv.x * 18.0, uv.y * 10.0 - TIME * 3.0)) - 0.5, noise(uv * 25.0 + TIME * 2.0));
    vec2 q = uv - vec2(j.x * 3.0 / RES.x, rise * (0.6 + j.y));
    vec3 c = PREV(q) * vec3(0.985, 0.955, 0.90);

    float m = abs(uv.x - 0.5) * 2.0;
    float s = SP(m * 0.9);
    float fl = noise(vec2(uv.x * 40.0, TIME * 6.0));
    float h = 0.03 + s * 0.32 * (0.6 + fl * 0.8);
    float f = smoothstep(h, h * 0.2, uv.y);
    vec3 hot = mix(PAL(0.15), PAL(0.45), s);
    hot = mix(hot, vec3(1.0, 0.95, 0.8), smoothstep(0.6, 1.0, s) * 0.6);
    c = max(c, hot * f * (0.5 + s * 1.2));
    c += PAL(0.0) * 0.03 * smoothstep(0.4, 0.0, uv.y);
    return min(c, vec3(2.5));
}
