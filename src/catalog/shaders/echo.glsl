vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Sample slightly outside and turned, so the trail spirals inwards.
    vec2 q = rot(0.006 + MID * 0.025) * p * (1.012 + BASS * 0.025);
    q += 0.004 * vec2(sin(TIME * 1.3 + p.y * 4.0), cos(TIME * 1.1 + p.x * 4.0));
    vec3 c = PREVP(q);
    // Hue drift: a small turn about the grey axis.
    const float k = 0.035;
    vec3 g = vec3(dot(c, vec3(0.3333)));
    vec3 d = c - g;
    c = g + d * cos(k) + cross(vec3(0.57735), d) * sin(k);
    c = max(c, 0.0) * (0.9 + clamp(LVL, 0.0, 1.0) * 0.07);

    float r = length(p);
    float a = atan(p.x, p.y + 1e-6);
    float x = abs(a) / TAU;
    float rr = 0.45 + BASS * 0.15 + WV(x) * 0.18;
    float dist = abs(r - rr);
    vec3 rc = mix(PAL(x * 1.5 + TIME * 0.05), vec3(1.0), 0.3);
    float br = 0.35 + LVL * 1.1;
    c += rc * br * (smoothstep(0.006, 0.0, dist) + 0.25 * exp(-dist * 60.0));
    c += PAL(0.75) * 0.015 * exp(-2.0 * r);
    return min(c, vec3(3.0));
}
