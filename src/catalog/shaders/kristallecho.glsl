vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Fold into a 30-degree wedge: everything repeats six-fold mirrored.
    vec2 k = rot(MT * 0.05 + MID * 0.4) * p;
    float r = length(k);
    float a = mod1(atan(k.y, k.x + 1e-6), PI / 3.0);
    a = abs(a - PI / 6.0);
    k = r * vec2(cos(a), sin(a));
    vec3 c = PREVP(k * (0.978 - BASS * 0.03)) * 0.86;

    // The waveform as a horizontal line inside the wedge.
    float x = k.x;
    float amp = 0.05 + LVL * 0.3;
    float y = 0.16 + WV(x * 0.45) * amp;
    float dy = (WV(x * 0.45 + 0.002) - WV(x * 0.45 - 0.002)) / 0.004 * amp * 0.45;
    float d = abs(k.y - y) / sqrt(1.0 + dy * dy);
    float fade = smoothstep(1.3, 0.5, x) * smoothstep(0.0, 0.15, x);
    vec3 lc = mix(PAL(x * 0.4 + TIME * 0.04), vec3(1.0), 0.25);
    c += lc * fade * (smoothstep(0.011, 0.0, d) * 1.1 + 0.05 * exp(-d * 60.0));
    c += PAL(0.5) * 0.01 * exp(-r * 3.0);
    return min(c, vec3(3.0));
}
