vec3 vis(vec2 p, vec2 uv) {
    vec3 col = PAL(0.75) * 0.05 * (1.2 - uv.y);
    for (int i = 0; i < 8; ++i) {
        float fi = float(i);
        float s = SP(fi / 8.0 * 0.8 + 0.03);
        float x = p.x + p.y * MOUSE.x * 0.5;
        float ph = MT * (0.35 + 0.06 * fi) + fi * 1.7;
        float y = (fi - 3.5) * 0.16 + MOUSE.y * 0.6 * x / ASPECT * (fi - 3.5) / 3.5;
        y += (0.08 + s * 0.3) * (sin(x * (1.1 + 0.13 * fi) + ph) + 0.5 * sin(x * (2.3 - 0.11 * fi) - ph * 1.3 + fi));
        y += 0.04 * sin(x * 4.1 + ph * 0.7);
        float tw = cos(x * (1.7 + 0.2 * fi) - ph * 0.8 + fi * 2.1);
        float w = (0.012 + s * 0.06) * (0.25 + 0.75 * abs(tw));
        float d = abs(p.y - y) / w;
        float body = smoothstep(1.0, 0.7, d);
        float threads = 0.75 + 0.25 * sin(d * 9.0 + x * 3.0);
        float sheen = pow(1.0 - abs(tw), 3.0) * 0.8 + 0.25;
        vec3 c = PAL(fi / 8.0 + 0.05 * sin(x + MT * 0.2));
        col += c * body * threads * sheen * (1.0 - 0.5 * d * d) * (0.5 + s);
        col += c * 0.05 * exp(-d * 0.5) * (0.4 + s);
    }
    return tm(col * 1.2);
}
