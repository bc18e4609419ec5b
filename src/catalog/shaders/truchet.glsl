vec3 layer(vec2 p, float scale, float seed) {
    vec2 g = p * scale;
    vec2 id = floor(g), f = fract(g) - 0.5;
    float h = h21(id + seed);
    // every tile flips at its own moment
    float flip = step(0.5, fract(h * 7.0 + floor(TIME * 0.25 + h * 4.0) * 0.618));
    if (flip > 0.5) f.x = -f.x;
    vec2 c = f.x + f.y > 0.0 ? vec2(0.5) : vec2(-0.5);
    float d = abs(length(f - c) - 0.5);
    float w = 0.07 + BASS * 0.07;
    float s = SP(fract(h * 13.7) * 0.8);
    float tube = clamp(1.0 - d / w, 0.0, 1.0);
    float shade = sqrt(tube);
    float edge = fwidth(d) * 1.5;
    float body = smoothstep(w, w - edge, d);
    vec3 col = PAL(dot(g, vec2(0.04, 0.03)) + seed * 0.37 + TIME * 0.02);
    vec3 o = col * body * (0.15 + 0.6 * shade) * (0.35 + s * 1.2);
    o += mix(col, vec3(1.0), 0.6) * pow(tube, 8.0) * (0.15 + s * 0.9);
    o += col * exp(-d * 12.0) * (0.04 + s * 0.15);
    return o;
}

vec3 vis(vec2 p, vec2 uv) {
    vec3 col = PAL(0.75) * 0.02;
    vec3 back = layer(rot(0.4) * p + vec2(-MT * 0.09, MT * 0.04), 5.5, 7.1);
    vec3 front = layer(p + vec2(MT * 0.05, MT * 0.02), 3.0, 1.3);
    // the near layer hides the far one where it is solid
    col += back * 0.35 * (1.0 - clamp(length(front) * 2.0, 0.0, 0.85));
    col += front * 0.8;
    return tm(col * 1.4);
}
