vec3 vis(vec2 p, vec2 uv) {
    float r = length(p);
    float a = atan(p.x, p.y + 1e-6);
    float lr = log(r + 0.02);
    vec3 col = PAL(0.6) * 0.03;

    // two logarithmic arms; dust is sampled in a frame that winds with log r
    float arm = max(0.0, 0.5 + 0.5 * cos(2.0 * (a + lr * 2.6 - MT * 0.15)));
    vec2 w = rot(lr * 2.6 - MT * 0.15) * p;
    float dust = fbm(w * 4.0 + 1.7);
    float fine = noise(w * 22.0);
    float disc = exp(-r * 2.4);
    float dens = pow(arm, 2.5) * disc * (0.4 + dust * 1.2);
    float bright = 0.6 + LVL * 0.9;
    col += mix(PAL(0.0), PAL(0.55), smoothstep(0.05, 0.75, r + (dust - 0.5) * 0.3)) * dens * 1.8 * bright;
    col += PAL(0.45) * pow(arm, 6.0) * disc * smoothstep(0.5, 0.9, fine) * 0.8 * bright;
    col -= vec3(0.6) * smoothstep(0.45, 0.75, dust) * pow(arm, 1.5) * disc * 0.35;
    col = max(col, 0.0);
    col += mix(PAL(0.1), vec3(1.0), 0.6) * (exp(-r * 11.0) * (0.5 + BASS * 1.5) + exp(-r * 3.5) * 0.15 * (0.5 + BASS));

    for (int i = 0; i < 2; ++i) {
        vec2 g = p * (18.0 + float(i) * 17.0) + float(i) * 7.1;
        vec2 id = floor(g), f = fract(g) - 0.5;
        float h = h21(id + float(i) * 3.3);
        vec2 o = (h22(id) - 0.5) * 0.7;
        float tw = 0.5 + 0.5 * sin(TIME * (1.5 + h * 3.0) + h * 40.0);
        col += mix(vec3(1.0), PAL(h), 0.3) * step(0.8, h) * smoothstep(0.08, 0.0, length(f - o)) * tw * 1.2;
    }

    float x = abs(a) / PI;
    float s = SP(x * 0.85 + 0.02);
    float R = 0.78 + s * 0.14;
    float d = abs(r - R);
    vec3 c = PAL(x * 0.6 + 0.2);
    col += c * (smoothstep(0.005, 0.0, d) * (0.6 + s) + 0.008 / (d + 0.008) * 0.25 * (0.4 + s));
    return tm(col);
}
