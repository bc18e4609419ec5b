vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // A slow sine warp smears the last frame like liquid.
    float k = 0.004 + BASS * 0.012;
    vec2 w = vec2(sin(p.y * 3.1 + TIME * 0.6) + sin(p.y * 7.3 - TIME * 0.4) * 0.4,
                  cos(p.x * 2.7 - TIME * 0.5) + cos(p.x * 6.1 + TIME * 0.3) * 0.4);
    vec2 q = p * 0.996 + w * k;
    vec3 c = PREVP(q) * 0.975;

    float x = p.x / ASPECT;
    float amp = 0.12 + LVL * 0.5;
    float xs = x * 0.5 + 0.5;
    float y = WV(xs) * amp;
    // Distance across the line, not just vertically, so steep parts stay solid.
    float dy = (WV(xs + 0.002) - WV(xs - 0.002)) / 0.004 * amp * 0.5 / ASPECT;
    float d = abs(p.y - y) / sqrt(1.0 + dy * dy);
    vec3 lc = PAL(x * 0.4 + TIME * 0.07);
    // max, not add: a line that stands still must not pile up.
    c = max(c, lc * (smoothstep(0.01, 0.0, d) * 1.1 + 0.3 * exp(-d * 30.0)));
    return min(c, vec3(2.5));
}
