vec3 vis(vec2 p, vec2 uv) {
    float r = length(p);
    float a = atan(p.x, p.y + 1e-6);
    vec3 col = PAL(0.3) * 0.04 * exp(-r);

    // faint range rings and crosshair
    float rr = abs(fract(r * 4.0 + 0.5) - 0.5) / 4.0;
    col += PAL(0.3) * 0.12 * smoothstep(0.003, 0.0, rr) * smoothstep(1.8, 0.2, r);
    col += PAL(0.3) * 0.06 * smoothstep(0.002, 0.0, min(abs(p.x), abs(p.y))) * smoothstep(1.6, 0.0, r);

    for (int i = 0; i < 10; ++i) {
        float fi = float(i);
        float ph = fract(MT * 0.09 + fi / 10.0);
        float s = SP((fi + 0.5) / 10.0 * 0.9);
        float R = ph * 1.9 + 0.02 * (0.4 + s) * sin(a * (3.0 + fi) + MT * 1.7 + fi * 2.0);
        float d = abs(r - R);
        float w = 0.002 + s * 0.014;
        float fade = (1.0 - ph) * smoothstep(0.0, 0.08, ph);
        vec3 c = PAL(fi / 10.0);
        col += c * fade * (smoothstep(w, 0.0, d) * (0.35 + s * 1.4) + 0.01 * (0.4 + s) / (d + 0.01) * 0.35);
    }

    float sw = mod1(a - TIME * 1.1, TAU);
    float trail = exp(-(TAU - sw) * 2.5);
    float fade = smoothstep(1.9, 0.1, r);
    col += PAL(0.1) * trail * (0.12 + LVL * 0.8) * fade;
    col += mix(PAL(0.1), vec3(1.0), 0.5) * smoothstep(0.02, 0.0, TAU - sw) * (0.3 + LVL) * fade;

    col += mix(PAL(0.0), vec3(1.0), 0.4) * exp(-r * 9.0) * (0.25 + BASS * 1.2);
    return tm(col);
}
