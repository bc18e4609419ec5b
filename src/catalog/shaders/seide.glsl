vec3 vis(vec2 p, vec2 uv) {
    vec3 col = PAL(0.75) * 0.04 * (1.3 - uv.y);
    for (int i = 0; i < 8; ++i) {
        float fi = float(i);
        float s = SP(fi / 8.0 * 0.8 + 0.03);
        float x = p.x + p.y * MOUSE.x * 0.5;
        float ph = MT * (0.35 + 0.06 * fi) + fi * 1.7;
        float y = (fi - 3.5) * 0.15 + MOUSE.y * 0.7 * x / ASPECT * (fi - 3.5) / 3.5;
        y += (0.1 + s * 0.28) * (sin(x * (1.1 + 0.13 * fi) + ph) + 0.5 * sin(x * (2.3 - 0.11 * fi) - ph * 1.3 + fi));
        y += 0.04 * sin(x * 4.1 + ph * 0.7);
        float tw = cos(x * (1.3 + 0.15 * fi) - ph * 0.8 + fi * 2.1);
        float w = (0.03 + s * 0.07) * (0.15 + 0.85 * abs(tw));
        float d = abs(p.y - y) / w;
        float body = smoothstep(1.0, 0.8, d);
        float threads = 0.8 + 0.2 * sin(d * 7.0 * sign(p.y - y) + x * 2.0);
        float sheen = 0.3 + 1.2 * pow(1.0 - abs(tw), 4.0) + 0.3 * (1.0 - d * d);
        vec3 c = mix(mix(PAL(0.25), PAL(0.75), fract(fi * 0.375 + 0.1 * sin(x * 0.7 + MT * 0.2))), vec3(1.0), 0.35 * pow(1.0 - abs(tw), 6.0));
        col += c * body * threads * sheen * 0.42 * (0.55 + s);
        col += c * 0.025 * exp(-d * 0.4) * (0.4 + s);
    }
    return tm(col * 1.9);
}
