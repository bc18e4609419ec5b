vec3 vis(vec2 p, vec2 uv) {
    const float N = 56.0;
    float W = ASPECT * 0.92;
    float cw = 2.0 * W / N;
    float id = clamp(floor((p.x + W) / cw), 0.0, N - 1.0);
    float cx = -W + (id + 0.5) * cw;
    float x = abs(id + 0.5 - N * 0.5) / (N * 0.5);
    float s = SP(x * 0.9);
    float h = 0.015 + s * 0.82;
    float rad = cw * 0.32;
    float d = sdSeg(p, vec2(cx, -h), vec2(cx, h)) - rad;

    vec3 c = mix(PAL(x * 0.7 + TIME * 0.03), PAL(x * 0.7 + TIME * 0.03 + 0.25), abs(p.y) / max(h, 0.05));
    vec3 col = PAL(TIME * 0.03 + 0.5) * 0.04 * exp(-abs(p.y) * 2.0);
    col += c * smoothstep(0.003, -0.003, d) * (0.55 + 0.6 * s);
    col += c * 0.3 * exp(-max(d, 0.0) * 40.0) * (0.3 + s);
    col += mix(c, vec3(1.0), 0.7) * smoothstep(0.004, 0.0, abs(p.y)) * step(d, 0.0) * 0.6;
    col += PAL(0.5) * 0.08 * exp(-abs(p.y) * 60.0);
    return tm(col);
}
