vec3 vis(vec2 p, vec2 uv) {
    float r = length(p);
    float x = abs(atan(p.x, p.y + 1e-6)) / PI;
    float s = SP(x * 0.8 + 0.02);
    float R = 0.56 + BASS * 0.06 + s * 0.1;

    // tunnel depth grows towards the centre; the swirl twists more with depth
    float z = 0.35 / (r + 0.04);
    vec2 q = rot(MT * 0.4 + z * 1.3) * p;
    float n = fbm(q / (r + 0.15) * 1.6 + vec2(0.0, -MT * 0.3));
    float n2 = fbm(q / (r + 0.15) * 3.1 - vec2(MT * 0.2, 0.0) + n);
    float v = smoothstep(0.45, 1.0, n2 * 0.7 + n * 0.6);
    vec3 inside = PAL(z * 0.1 + n * 0.4 - MT * 0.04) * v * v * 3.2;
    inside += mix(PAL(0.35), vec3(1.0), 0.5) * exp(-r * 7.0) * 0.7;
    inside *= smoothstep(0.0, 0.35, r / R + 0.05) * 0.7 + 0.3;
    inside *= smoothstep(R, R * 0.55, r) * 0.8 + 0.2;

    vec3 col = inside * smoothstep(R + 0.01, R - 0.01, r);
    float d = abs(r - R);
    vec3 c = mix(PAL(x * 0.5), vec3(1.0), 0.35);
    col += c * (smoothstep(0.008, 0.0, d) * 1.3 + 0.02 / (d + 0.02) * 0.4);
    col += PAL(0.1 + x * 0.3) * exp(-max(r - R, 0.0) * 4.0) * step(R, r) * (0.1 + LVL * 0.7);
    return tm(col);
}
