vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Fresh picture: spectrum stripes and an inverted disc.
    float x = uv.x;
    float col = floor(x * 48.0);
    float s = SP(abs(col - 23.5) / 24.0 * 0.9);
    float bar = step(abs(uv.y - 0.5) * 2.0, s * 0.9 + 0.02);
    float stripe = step(0.25, fract(x * 48.0)) * (0.5 + 0.5 * step(0.5, fract(uv.y * 36.0)));
    vec3 fresh = PAL(col / 48.0 + TIME * 0.03) * bar * (0.3 + 0.7 * stripe) * (0.4 + s);
    fresh += PAL(0.75) * 0.06 * (1.0 - bar);
    float dr = length(p - vec2(sin(MT * 0.3) * 0.4, 0.0));
    if (dr < 0.25 + BASS * 0.25) fresh = vec3(1.0) - clamp(fresh, 0.0, 1.0) * vec3(0.9, 1.0, 0.8);

    // Blocks of the last frame, shifted with colour fringes.
    vec2 bs = vec2(24.0, 14.0);
    float t = floor(TIME * 8.0);
    vec2 bid = floor(uv * bs);
    float hb = h21(bid + t * 0.713);
    vec3 c = fresh;
    if (hb < 0.22 + clamp(BEAT, 0.0, 1.0) * 0.6) {
        vec2 off = (h22(bid + t) - 0.5) * vec2(0.06, 0.015);
        float fr = 0.004 + h21(bid - t) * 0.008;
        c.r = PREV(uv + off + vec2(fr, 0.0)).r;
        c.g = PREV(uv + off).g;
        c.b = PREV(uv + off - vec2(fr, 0.0)).b;
        c *= 0.985;
    }
    c += (h21(uv * RES + fract(TIME) * 97.0) - 0.5) * HIGH * 0.25;
    return clamp(c, 0.0, 1.5);
}
