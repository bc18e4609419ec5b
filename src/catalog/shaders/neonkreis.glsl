vec3 vis(vec2 p, vec2 uv) {
    float r = length(p);
    float x = abs(atan(p.x, p.y + 1e-6)) / PI;
    const float e = 0.003;
    float amp = 0.03 + LVL * 0.16;
    vec3 col = PAL(0.3) * 0.05 * exp(-r * 1.5);
    col += mix(PAL(0.1), vec3(1.0), 0.3) * exp(-r * 5.0) * (0.12 + BASS * 0.8);
    for (int i = 0; i < 3; ++i) {
        float fi = float(i);
        float k = x * 0.25 + fi * 0.31;
        float w = WV(k);
        float R = 0.3 + fi * 0.17 + BASS * 0.06 + w * amp * (1.0 + fi * 0.3);
        float g = (WV(k + e) - WV(k - e)) / (2.0 * e) * 0.25 * amp * (1.0 + fi * 0.3) / (PI * R);
        float d = abs(r - R) / sqrt(1.0 + g * g);
        vec3 c = PAL(0.25 + fi * 0.25);
        col += mix(c, vec3(1.0), 0.55) * smoothstep(0.0035, 0.0, d);
        col += c * (0.02 / (d + 0.02) * 0.3 + exp(-d * 50.0) * 0.7);
    }
    return tm(col);
}
