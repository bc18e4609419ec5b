vec3 vis(vec2 p, vec2 uv) {
    vec2 q = (p - MOUSE * 0.08) / (1.0 - 0.035 * BEAT);
    float r = length(q);
    float x = abs(atan(q.x, q.y + 1e-6)) / PI;
    float r0 = 0.26 + BASS * 0.05;

    vec3 col = PAL(0.7) * 0.05 * exp(-r * 1.5);
    col += mix(vec3(1.0), PAL(0.6), 0.3) * starfield(q, MT * 0.06) * (0.3 + HIGH * 1.5);
    col *= smoothstep(r0 - 0.004, r0 + 0.004, r);
    col += PAL(0.9) * 0.04 * smoothstep(r0, 0.0, r);
    col += PAL(0.05) * (0.15 + BASS * 0.7) * exp(-max(r - r0, 0.0) * 14.0) * step(r0, r);

    const float e = 0.004;
    for (int i = 0; i < 6; ++i) {
        float fi = float(i);
        float k = x * 0.8 + fi * 0.02;
        float amp = 0.09 + fi * 0.06;
        float s = SP(k);
        float ds = (SP(k + e) - SP(k - e)) / (2.0 * e) * 0.8;
        float rr = r0 + 0.012 + fi * 0.018 + s * amp;
        // thin the distance where the outline is steep so the line keeps its width
        float g = ds * amp / (PI * rr);
        float d = abs(r - rr) / sqrt(1.0 + g * g);
        vec3 c = i == 0 ? vec3(1.0) : PAL(fi / 6.0 + 0.1);
        float w = 0.0036 - fi * 0.0003;
        col += c * (smoothstep(w, 0.0, d) + 0.35 * w / (d + w)) * (0.65 + 0.35 * smoothstep(0.0, 0.6, s));
    }
    return tm(col);
}
