vec3 layer(vec2 p, float scale, float seed) {
    vec2 g = p * scale;
    vec2 id = floor(g), f = fract(g) - 0.5;
    float h = h21(id + seed);
    // every tile flips at its own moment
    float flip = step(0.5, fract(h * 7.0 + floor(TIME * 0.25 + h * 4.0) * 0.618));
    if (flip > 0.5) f.x = -f.x;
    vec2 c = f.x + f.y > 0.0 ? vec2(0.5) : vec2(-0.5);
    float d = abs(length(f - c) - 0.5);
    float w = 0.06 + BASS * 0.08;
    float s = SP(fract(h * 13.7) * 0.8);
    float line = smoothstep(w, w - 0.04, d);
    float glow = exp(-d * 9.0);
    float along = atan(f.y - c.y, f.x - c.x);
    vec3 col = PAL(h * 0.6 + along * 0.08 + TIME * 0.03);
    float core = smoothstep(0.02, 0.0, d);
    return col * (line * (0.25 + s * 1.3) + glow * (0.06 + s * 0.3)) + mix(col, vec3(1.0), 0.5) * core * (0.2 + s);
}

vec3 vis(vec2 p, vec2 uv) {
    vec3 col = PAL(0.75) * 0.025;
    col += layer(p + vec2(MT * 0.05, MT * 0.02), 3.0, 1.3) * 0.45;
    col += layer(rot(0.4) * p + vec2(-MT * 0.09, MT * 0.04), 5.5, 7.1) * 0.3;
    return tm(col * 1.5);
}
