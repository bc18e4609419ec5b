vec3 vis(vec2 p, vec2 uv) {
    const float rows = 30.0;
    vec2 g = vec2(p.x, p.y) * rows * 0.5;
    float col = floor(g.x / 0.75);
    float hc = h11(col * 1.37 + 0.5);
    float speed = (4.0 + hc * 6.0) * (0.6 + BASS * 0.9);
    float s = SP(fract(hc * 9.1) * 0.85);
    // each column keeps two drops at different phases
    vec2 cell = vec2(fract(g.x / 0.75), fract(g.y));
    float row = floor(g.y);
    vec3 c = PAL(0.1) * 0.01;
    float bright = 0.0, head = 0.0;
    for (int k = 0; k < 2; ++k) {
        float len = 10.0 + 14.0 * h11(col + float(k) * 17.0);
        float pos = rows * 0.5 + 6.0 - mod1(TIME * speed * (1.0 - 0.35 * float(k)) + hc * 97.0 + float(k) * 23.0, rows + len + 12.0);
        float dist = row - pos;
        if (dist >= 0.0 && dist < len) bright = max(bright, pow(1.0 - dist / len, 1.5));
        if (dist >= 0.0 && dist < 1.0) head = 1.0;
    }
    // glyph: a 4x5 bit pattern that changes now and then
    vec2 b = floor(cell * vec2(4.0, 5.0) - vec2(0.0, 0.0));
    vec2 inner = fract(cell * vec2(4.0, 5.0));
    float change = floor(TIME * (1.0 + 3.0 * h11(col + row * 3.1)) + row * 0.37);
    float bit = step(0.45, h21(vec2(col * 13.0 + row * 7.0 + change, b.x * 5.0 + b.y * 11.0)));
    bit *= step(0.5, b.x) * step(b.x, 3.5) * step(0.5, b.y) * step(b.y, 4.5);
    bit *= smoothstep(0.5, 0.35, max(abs(inner.x - 0.5), abs(inner.y - 0.5)));
    float lum = bright * (0.4 + s * 1.5);
    c += PAL(0.05) * bit * lum;
    c += mix(PAL(0.5), vec3(1.0), 0.6) * bit * head * (0.8 + s);
    c += PAL(0.0) * (bright * 0.04 + head * 0.12) * (0.3 + s);
    return tm(c * 1.3);
}
