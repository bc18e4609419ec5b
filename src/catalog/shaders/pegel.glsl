vec3 vis(vec2 p, vec2 uv) {
    const float COLS = 32.0, SEGS = 36.0;
    float W = ASPECT * 0.86, base = -0.52, H = 1.38;
    vec3 col = PAL(0.25) * 0.025 * (1.0 - uv.y);

    bool refl = p.y < base;
    float y = refl ? base + (base - p.y) * 1.4 : p.y;
    float cx = (p.x + W) / (2.0 * W) * COLS;
    float cy = (y - base) / H * SEGS;
    if (cx < 0.0 || cx >= COLS || cy < 0.0 || cy >= SEGS) return col;

    float ci = floor(cx), si = floor(cy);
    vec2 f = vec2(fract(cx), fract(cy)) - 0.5;
    float t = (ci + 0.5) / COLS;
    float s = SP(t);
    float pk = PK(t);
    float h = (si + 0.5) / SEGS;
    float cell = smoothstep(0.02, -0.02, max(abs(f.x) - 0.38, abs(f.y) - 0.3));
    float lit = step(h, s);
    vec3 c = mix(PAL(0.25), PAL(0.0), smoothstep(0.2, 0.6, h));
    c = mix(c, PAL(0.5), smoothstep(0.6, 0.8, h));
    c = mix(c, vec3(1.0, 0.25, 0.08), smoothstep(0.85, 0.95, h));
    vec3 led = c * (0.06 + lit * 1.7);
    led += vec3(1.0) * step(abs(si - floor(pk * SEGS)), 0.5) * step(0.02, pk) * 3.0;
    led *= cell;
    // soft bloom across the gaps
    led += c * lit * 0.12;
    if (refl) led *= 0.22 * smoothstep(0.45, 0.0, base - p.y);
    return tm(col + led);
}
