vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Each channel echoes with its own turn and zoom: a chromatic split.
    float sp = 0.003 + clamp(BEAT, 0.0, 1.0) * 0.012;
    const float tw = 0.008, z = 1.025;
    vec3 c;
    c.r = PREVP(rot(tw - sp) * p / (z - sp)).r;
    c.g = PREVP(rot(tw) * p / z).g;
    c.b = PREVP(rot(tw + sp) * p / (z + sp)).b;
    c *= 0.95;

    float r = length(p);
    float a = atan(p.x, p.y + 1e-6);
    float rr = 0.24 + BASS * 0.16 + 0.04 * sin(TIME * 3.0);
    float br = 0.1 + LVL * 0.35;
    float d = abs(r - rr);
    float ring = smoothstep(0.012, 0.004, d) + 0.25 * exp(-d * 40.0);
    float sa = abs(fract(a / TAU * 12.0 + TIME * 0.08) - 0.5) * r * TAU / 12.0;
    float spoke = smoothstep(0.007, 0.002, sa) * smoothstep(0.02, rr * 0.4, r) * step(r, rr);
    vec3 col = mix(PAL(a / TAU + TIME * 0.05), vec3(1.0), 0.4);
    c += col * br * (ring + spoke * 0.6);
    return min(c, vec3(3.0));
}
