vec3 vis(vec2 p, vec2 uv) {
    vec2 q = p - MOUSE * 0.05;
    float r = length(q);
    float a = atan(q.x, q.y);
    const float N = 120.0;
    float seg = (a / TAU + 0.5) * N;
    float f = fract(seg) - 0.5;
    float ac = (floor(seg) + 0.5) / N * TAU - PI;
    float x = abs(ac) / PI;
    float s = SP(x * 0.8 + 0.02);

    float r0 = 0.34 + BASS * 0.035;
    float len = 0.015 + s * 0.42;
    float hw = 0.3 * TAU / N * r0;
    vec2 d = abs(vec2(f * TAU / N * r, r - r0 - len * 0.5)) - vec2(hw, len * 0.5);
    float dist = length(max(d, 0.0)) + min(max(d.x, d.y), 0.0);

    vec3 c = mix(PAL(x * 0.9 + TIME * 0.02), vec3(1.0), 0.5 * smoothstep(0.6, 1.0, s));
    vec3 col = PAL(0.5) * 0.06 * exp(-r);
    col += c * smoothstep(0.0025, 0.0, dist);
    col += c * 0.3 * exp(-45.0 * max(dist, 0.0));
    col += PAL(0.0) * (0.5 + BASS) * smoothstep(0.004, 0.0, abs(r - (r0 - 0.035)));
    col += PAL(0.3) * 0.25 * exp(-4.0 * r) * (0.4 + BASS);
    return col;
}
