vec3 vis(vec2 p, vec2 uv, sampler2D prev) {
    // Blurred, upward-drifting trails.
    vec2 o = 1.3 / RES;
    vec2 q = uv - vec2(0.0, 0.9 / RES.y);
    vec3 c = (PREV(q + vec2(o.x, 0.0)) + PREV(q - vec2(o.x, 0.0)) + PREV(q + vec2(0.0, o.y)) + PREV(q - vec2(0.0, o.y))) * 0.25;
    c *= 0.982;

    vec3 add = vec3(0.0);
    for (int i = 0; i < 4; ++i) {
        float fi = float(i);
        float t = MT * (0.5 + fi * 0.13) + fi * 1.7;
        vec2 lp = vec2(sin(t * 1.1 + fi) * 0.75 * ASPECT, sin(t * 1.7 + fi * 2.3) * 0.6);
        float s = SP(0.04 + fi * 0.2);
        float rad = 0.01 + s * 0.04;
        float d = length(p - lp);
        add += PAL(fi * 0.25 + 0.1) * (rad * rad) / (d * d + rad * rad * 0.4) * 0.35;
    }
    float dm = length(p - MOUSE);
    float rm = 0.012 + BASS * 0.04;
    add += mix(PAL(0.6), vec3(1.0), 0.4) * (rm * rm) / (dm * dm + rm * rm * 0.4) * 0.35;
    c += min(add, vec3(1.5)) * 0.5;
    return min(c, vec3(2.5));
}
