float sdHex(vec2 p, float r) {
    const vec3 k = vec3(-0.866025404, 0.5, 0.577350269);
    p = abs(p);
    p -= 2.0 * min(dot(k.xy, p), 0.0) * k.xy;
    p -= vec2(clamp(p.x, -k.z * r, k.z * r), r);
    return length(p) * sign(p.y);
}

vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Sample farther out and turned: the picture is sucked into the centre.
    vec2 q = rot(0.012 + BASS * 0.05) * p * 1.025;
    vec3 c = PREVP(q) * 0.955;

    float r0 = 0.42 + BASS * 0.25;
    vec2 h = rot(TIME * 0.4) * p;
    float d = abs(sdHex(h, r0));
    float s = ringSpec(p + vec2(0.0, 1e-6), 0.85);
    float a = atan(p.x, p.y + 1e-6);
    vec3 hc = mix(PAL(a / TAU + TIME * 0.03), vec3(1.0), smoothstep(0.6, 1.0, s) * 0.5);
    c += hc * (0.2 + s * 1.4) * (smoothstep(0.006, 0.0, d) + 0.3 * exp(-d * 50.0));
    c += PAL(0.6) * 0.02 * exp(-length(p) * 6.0);
    return min(c, vec3(3.0));
}
