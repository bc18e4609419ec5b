vec3 vis(vec2 p, vec2 uv) {
    vec2 c1 = MOUSE + 0.2 * vec2(sin(TIME * 0.13), cos(TIME * 0.17));
    vec2 c2 = vec2(0.55 * sin(TIME * 0.11 + 1.0), 0.3 * cos(TIME * 0.09)) + BASS * 0.08 * vec2(sin(TIME * 9.0), cos(TIME * 7.0));
    float f = (110.0 + MID * 60.0) / TAU;
    float r1 = length(p - c1), r2 = length(p - c2);
    float a = 1.0 - abs(fract(r1 * f) - 0.5) * 2.0;
    float b = 1.0 - abs(fract(r2 * f) - 0.5) * 2.0;
    float v = smoothstep(0.25, 0.9, a * b);
    v = mix(v, 1.0 - v, smoothstep(0.55, 0.85, BEAT));
    float fade = exp(-0.3 * dot(p, p));
    vec3 col = mix(PAL(0.75) * 0.04, PAL(0.25 + 0.05 * sin(r1 * 3.0 - r2 * 2.0)), v) * fade;
    col += PAL(0.0) * 0.3 * pow(v, 5.0) * fade;
    return col;
}
