vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Each channel echoes with its own turn and zoom: a chromatic split.
    float sp = 0.004 + clamp(BEAT, 0.0, 1.0) * 0.02;
    float r0 = 0.01, z = 1.015;
    vec3 c;
    c.r = PREVP(rot(r0 - sp) * p / (z - sp)).r;
    c.g = PREVP(rot(r0) * p / z).g;
    c.b = PREVP(rot(r0 + sp) * p / (z + sp)).b;
    c *= 0.93;

    float r = length(p);
    float a = atan(p.x, p.y);
    float rr = 0.3 + BASS * 0.18;
    float br = 0.25 + LVL * 1.2;
    float d = abs(r - rr);
    float ring = smoothstep(0.008, 0.0, d) + 0.3 * exp(-d * 40.0);
    float sa = abs(fract(a / TAU * 12.0 + TIME * 0.1) - 0.5) * r * TAU / 12.0;
    float spoke = smoothstep(0.005, 0.0, sa) * smoothstep(rr, rr * 0.25, r) * step(r, rr);
    vec3 col = mix(PAL(a / TAU + TIME * 0.05), vec3(1.0), 0.3);
    c += col * br * (ring + spoke * 0.6);
    return min(c, vec3(3.0));
}
