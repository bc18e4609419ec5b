vec3 vis(vec2 p, vec2 uv) {
    float r = length(p);
    float a = atan(p.x, p.y + 1e-6);
    const float RS = 0.92;
    float scope = smoothstep(RS + 0.01, RS - 0.01, r);
    vec3 col = mix(PAL(0.55) * 0.025, PAL(0.3) * 0.05, scope) * exp(-r * 0.8);

    // range rings, cross hairs and a bezel with degree ticks
    float rr = abs(fract(r / RS * 4.0 + 0.5) - 0.5) * RS / 4.0;
    col += PAL(0.55) * 0.22 * smoothstep(0.003, 0.0, rr) * scope;
    vec2 ap = abs(p);
    float cross = min(min(ap.x, ap.y), abs(ap.x - ap.y) * 0.7071);
    col += PAL(0.55) * 0.12 * smoothstep(0.0025, 0.0, cross) * scope;
    col += PAL(0.25) * (0.7 * smoothstep(0.005, 0.0, abs(r - RS)) + 0.08 * exp(-abs(r - RS) * 30.0));
    float tick = abs(fract(a / TAU * 72.0 + 0.5) - 0.5) / 72.0 * TAU * r;
    float major = step(abs(fract(a / TAU * 12.0 + 0.5) - 0.5), 0.05);
    col += PAL(0.25) * 1.0 * smoothstep(0.005, 0.0, tick) * step(RS, r) * step(r, RS + 0.025 + major * 0.03);

    // expanding sonar rings, one per spectrum region
    for (int i = 0; i < 10; ++i) {
        float fi = float(i);
        float ph = fract(MT * 0.09 + fi / 10.0);
        float s = SP((fi + 0.5) / 10.0 * 0.9);
        float R = ph * 1.9 + 0.025 * (0.4 + s) * sin(a * (3.0 + fi) + MT * 1.7 + fi * 2.0);
        float d = abs(r - R);
        float w = 0.002 + s * 0.016;
        float fade = (1.0 - ph) * smoothstep(0.0, 0.08, ph) * (0.45 + 0.55 * scope);
        vec3 c = PAL(fi / 10.0 + 0.05);
        col += c * fade * (smoothstep(w, 0.0, d) * (0.4 + s * 1.6) + 0.004 * (0.4 + s) / (d + 0.01));
    }

    // rotating sweep with a fading phosphor trail, and echoes that flare as it passes
    float sa = TIME * 1.1;
    float sw = mod1(a - sa, TAU);
    float trail = exp(-(TAU - sw) * 3.0);
    col += mix(PAL(0.5), PAL(0.0), trail * trail) * trail * (0.15 + LVL * 0.9) * scope;
    col += mix(PAL(0.0), vec3(1.0), 0.5) * smoothstep(0.025, 0.0, (TAU - sw) * r) * (0.4 + LVL) * scope;
    for (int k = 0; k < 8; ++k) {
        float fk = float(k);
        float ba = (h11(fk + 1.3) - 0.5) * TAU;
        float br = 0.2 + h11(fk + 7.9) * 0.65;
        vec2 bp = br * vec2(sin(ba), cos(ba));
        float age = mod1(sa - ba - PI, TAU);
        float e = exp(-age * 1.2) * (0.5 + SP(h11(fk + 4.2) * 0.8));
        float d = length(p - bp);
        col += mix(PAL(0.3), vec3(1.0), 0.5) * e * (smoothstep(0.02, 0.006, d) * 1.5 + 0.003 / (d * d + 0.003) * 0.5);
        col += PAL(0.3) * e * 0.6 * smoothstep(0.004, 0.0, abs(d - 0.03 - age * 0.04));
    }

    col += mix(PAL(0.0), vec3(1.0), 0.4) * exp(-r * 9.0) * (0.25 + BASS * 1.2);
    return tm(col * 1.1);
}
