vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Fold into one 60-degree wedge so the echo repeats six-fold mirrored.
    vec2 k = rot(MT * 0.05 + MID * 0.3) * p;
    float r = length(k);
    float a = mod1(atan(k.y, k.x), PI / 3.0);
    a = abs(a - PI / 6.0);
    k = r * vec2(cos(a), sin(a)) * (0.975 - BASS * 0.03);
    vec3 c = PREVP(k) * 0.94;

    float x = p.x / ASPECT;
    float y = WV(x * 0.5 + 0.5) * (0.08 + LVL * 0.35);
    float d = abs(p.y - y);
    vec3 lc = mix(PAL(x * 0.5 + TIME * 0.04), vec3(1.0), 0.35);
    c += lc * (smoothstep(0.008, 0.0, d) * 0.8 + 0.12 * exp(-d * 40.0)) * smoothstep(1.0, 0.6, abs(x));
    return min(c, vec3(3.0));
}
