vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Fresh picture: spectrum stripes and an inverted disc.
    float col = floor(uv.x * 48.0);
    float s = SP(abs(col - 23.5) / 24.0 * 0.9);
    float h = abs(uv.y - 0.5) * 2.0;
    float bar = step(h, s * 0.9 + 0.02) * step(0.2, fract(uv.x * 48.0));
    vec3 fresh = PAL(col / 48.0 + TIME * 0.03) * bar * (0.35 + s) * (1.0 - h * 0.5);
    fresh += PAL(0.75) * 0.05;
    float dr = length(p - vec2(sin(MT * 0.3) * 0.5, 0.0));
    if (dr < 0.22 + BASS * 0.25) fresh = max(PAL(0.55) - fresh * 1.2, 0.0);

    // Blocks of the last frame, shifted with colour fringes, like broken compression.
    float t = floor(TIME * 8.0);
    vec2 bs = h21(floor(uv * vec2(6.0, 4.0)) + t) < 0.5 ? vec2(32.0, 18.0) : vec2(16.0, 9.0);
    vec2 bid = floor(uv * bs);
    vec3 c = fresh;
    if (h21(bid + t * 0.713) < 0.14 + clamp(BEAT, 0.0, 1.0) * 0.45) {
        vec2 off = (h22(bid + t) - 0.5) * vec2(0.05, 0.012);
        float fr = 0.003 + h21(bid - t) * 0.007;
        c.r = PREV(uv + off + vec2(fr, 0.0)).r;
        c.g = PREV(uv + off).g;
        c.b = PREV(uv + off - vec2(fr, 0.0)).b;
        c *= 0.98;
    }
    c += (h21(uv * RES + fract(TIME) * 97.0) - 0.5) * HIGH * 0.12;
    return clamp(c, 0.0, 1.5);
}
